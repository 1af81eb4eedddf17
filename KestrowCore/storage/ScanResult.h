#pragma once

#include "storage/DiscoveredItem.h"
#include "storage/ScanSummary.h"

#include <QDateTime>
#include <QStringList>
#include <QUuid>

#include <vector>

namespace kestrow {

// One finished scan.
struct ScanResult {
    QUuid scanId;
    QDateTime startedAt;
    QDateTime completedAt;
    double durationSeconds = 0;
    std::vector<DiscoveredItem> items;
    ScanSummary summary;
    QStringList warnings;
    std::vector<StorageCategory> scannedCategories;

    [[nodiscard]] QUuid id() const { return scanId; }

    [[nodiscard]] JsonValue toJson(DateEncoding dates) const;
    [[nodiscard]] static ScanResult fromJson(const JsonValue& json, DateEncoding dates); // throws JsonDecodingError

    friend bool operator==(const ScanResult&, const ScanResult&) = default;
};

} // namespace kestrow
