#pragma once

#include "storage/RiskTier.h"
#include "storage/StorageCategory.h"
#include "support/JsonDecoder.h"
#include "support/JsonValue.h"

#include <QDateTime>
#include <QString>
#include <QStringList>

#include <cstdint>
#include <optional>

namespace kestrow {

// One cleanup rule: which paths a piece of storage occupies and how dangerous removing them
// is. Patterns stay as written, "~" included; they are expanded against a home at each use.
// Only `enabled` changes after creation.
struct RuleDefinition {
    QString id;
    QString name;
    QString description;
    StorageCategory category = StorageCategory::developerCache;
    RiskTier riskTier = RiskTier::safeToDelete;
    QStringList patterns;
    QStringList excludedPatterns;
    bool isRegenerable = false;
    bool isBuiltIn = false;
    bool enabled = true;
    std::optional<std::int64_t> minAgeDays;
    std::optional<QString> synthesizedBy;
    std::optional<QDateTime> createdAt;
    std::optional<QDateTime> updatedAt;

    // Keys are the field names; absent optionals are left out.
    [[nodiscard]] JsonValue toJson(DateEncoding dates) const;
    // Strict: the ten required keys must be present with their types; unknown keys are
    // ignored. Throws JsonDecodingError.
    [[nodiscard]] static RuleDefinition fromJson(const JsonValue& json, DateEncoding dates);

    friend bool operator==(const RuleDefinition&, const RuleDefinition&) = default;
};

} // namespace kestrow
