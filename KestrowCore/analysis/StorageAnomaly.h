#pragma once

#include "rules/RuleDefinition.h"
#include "storage/RiskTier.h"
#include "storage/StorageCategory.h"
#include "support/JsonDecoder.h"
#include "support/JsonValue.h"

#include <QString>
#include <QStringList>
#include <QUuid>

#include <cstdint>
#include <optional>

namespace kestrow {

// A heavy folder that no rule claims and that looks like a cache: how sure the detector is,
// why, and the rule it would take to clean it. A proposal only.
struct StorageAnomaly {
    QUuid id;
    QString path;
    std::int64_t allocatedSizeBytes = 0;
    std::int64_t logicalSizeBytes = 0;
    std::int64_t fileCount = 0; // regular files
    double confidenceScore = 0; // 0 to 1
    bool hasCacheDirTag = false;
    std::optional<QString> tagApplicationComment;
    QStringList matchedKeywords; // found in the folder's name, in the keyword list's order
    RiskTier suggestedRiskTier = RiskTier::reviewRequired;
    StorageCategory suggestedCategory = StorageCategory::unknownAnomaly;
    QString anomalyDescription;
    std::optional<RuleDefinition> proposedRule; // always present in a reported anomaly

    [[nodiscard]] QString url() const;
    // Keys are the field names, in their order; absent optionals are left out.
    [[nodiscard]] JsonValue toJson(DateEncoding dates) const;
};

} // namespace kestrow
