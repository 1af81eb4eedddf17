#pragma once

#include "support/JsonValue.h"
#include "system/MemoryPressureStatus.h"

#include <cstdint>

namespace kestrow {

// Physical memory and how it is used.
struct MemoryMetrics {
    std::int64_t totalBytes = 0;
    std::int64_t usedBytes = 0;
    std::int64_t freeBytes = 0;
    std::int64_t appMemoryBytes = 0;
    std::int64_t wiredBytes = 0;
    std::int64_t compressedBytes = 0;
    MemoryPressureStatus pressureStatus = MemoryPressureStatus::normal;
    double usedPercentage = 0;

    [[nodiscard]] QString formattedUsedBytes() const;
    [[nodiscard]] QString formattedTotalBytes() const;
    [[nodiscard]] JsonValue toJson() const;
    friend bool operator==(const MemoryMetrics&, const MemoryMetrics&) = default;
};

} // namespace kestrow
