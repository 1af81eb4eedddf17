#pragma once

#include "apps/DependencyLocation.h"
#include "storage/RiskTier.h"
#include "support/JsonDecoder.h"
#include "support/JsonValue.h"

#include <QDateTime>
#include <QString>
#include <QUuid>

#include <cstdint>
#include <optional>

namespace kestrow {

// An entry of the Library that no installed application claims: how sure the hunter is that
// it is an orphan, why, and how safe it would be to remove.
struct AppLeftover {
    QUuid id;
    QString candidateAppName;
    std::optional<QString> bundleIdentifier;
    QString path; // the entry's URL in JSON, beside this text
    DependencyLocation location = DependencyLocation::applicationSupport;
    std::int64_t allocatedSizeBytes = 0;
    std::int64_t logicalSizeBytes = 0;
    std::optional<QDateTime> lastModifiedDate;
    double confidence = 0;
    QString orphanReason;
    RiskTier suggestedRiskTier = RiskTier::reviewRequired;

    [[nodiscard]] QString url() const;
    // Keys are the field names; absent optionals left out.
    [[nodiscard]] JsonValue toJson(DateEncoding dates) const;

    friend bool operator==(const AppLeftover&, const AppLeftover&) = default;
};

} // namespace kestrow
