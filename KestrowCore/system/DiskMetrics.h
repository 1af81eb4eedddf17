#pragma once

#include "support/JsonValue.h"

#include <QString>

#include <cstdint>

namespace kestrow {

// One volume's capacity. The used figures are derived from the others.
struct DiskMetrics {
    // `usedBytes` is total less free, not below 0; `usedPercentage` its share of the total,
    // 0 when the total is below 1.
    DiskMetrics(QString path, QString name, std::int64_t totalSize, std::int64_t freeSize, std::int64_t availableSize,
                std::int64_t purgeableSize, std::int64_t systemSize);

    QString volumePath;
    QString volumeName;
    std::int64_t totalBytes = 0;
    std::int64_t freeBytes = 0;
    std::int64_t availableBytes = 0;
    std::int64_t purgeableBytes = 0;
    std::int64_t systemBytes = 0;
    std::int64_t usedBytes = 0;
    double usedPercentage = 0;

    [[nodiscard]] QString formattedFreeBytes() const;
    [[nodiscard]] QString formattedAvailableBytes() const;
    [[nodiscard]] JsonValue toJson() const;
    friend bool operator==(const DiskMetrics&, const DiskMetrics&) = default;
};

} // namespace kestrow
