#pragma once

#include "storage/RiskTier.h"

#include <QString>

#include <optional>

namespace kestrow {

// The classifier's advice for one item.
struct RiskClassificationResult {
    RiskTier riskTier = RiskTier::reviewRequired;
    double confidence = 0;
    QString reason;
    std::optional<QString> matchedRuleId;
    bool hasCacheDirTag = false;

    friend bool operator==(const RiskClassificationResult&, const RiskClassificationResult&) = default;
};

} // namespace kestrow
