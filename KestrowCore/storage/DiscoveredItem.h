#pragma once

#include "storage/RiskTier.h"
#include "storage/StorageCategory.h"
#include "support/JsonDecoder.h"
#include "support/JsonValue.h"
#include "support/UuidText.h"

#include <QDateTime>
#include <QString>
#include <QUuid>

#include <cstdint>
#include <optional>

namespace kestrow {

// One finding of a scan. `path` is the location; the record's URL is derived from it.
struct DiscoveredItem {
    QUuid id;
    QString path;
    StorageCategory category = StorageCategory::developerCache;
    RiskTier riskTier = RiskTier::safeToDelete;
    std::int64_t logicalSizeBytes = 0;
    std::int64_t allocatedSizeBytes = 0;
    std::int64_t fileCount = 0;
    std::optional<QDateTime> lastAccessedDate;
    std::optional<QDateTime> lastModifiedDate;
    bool isOrphaned = false;
    bool isLocked = false;
    bool requiresFullDiskAccess = false;
    QString itemDescription;
    std::optional<QString> ruleId;

    [[nodiscard]] QString url() const;
    [[nodiscard]] QString formattedAllocatedSize() const;
    [[nodiscard]] QString formattedLogicalSize() const;

    [[nodiscard]] JsonValue toJson(DateEncoding dates) const;
    [[nodiscard]] static DiscoveredItem fromJson(const JsonValue& json, DateEncoding dates); // throws JsonDecodingError

    friend bool operator==(const DiscoveredItem&, const DiscoveredItem&) = default;
};

} // namespace kestrow
