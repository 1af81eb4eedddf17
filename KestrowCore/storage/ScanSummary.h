#pragma once

#include "storage/CategorySummary.h"
#include "storage/DiscoveredItem.h"

#include <cstdint>
#include <vector>

namespace kestrow {

// Totals of one scan, with one summary per category that has items, largest first.
struct ScanSummary {
    std::int64_t totalItems = 0;
    std::int64_t totalLogicalBytes = 0;
    std::int64_t totalAllocatedBytes = 0;
    std::int64_t safeFreeableBytes = 0;
    std::int64_t reviewFreeableBytes = 0;
    bool requiresFullDiskAccess = false;
    std::vector<CategorySummary> categoryBreakdown;

    [[nodiscard]] static ScanSummary from(const std::vector<DiscoveredItem>& items);

    [[nodiscard]] QString formattedAllocatedBytes() const;
    [[nodiscard]] QString formattedSafeFreeableBytes() const;
    [[nodiscard]] QString formattedReviewFreeableBytes() const;

    [[nodiscard]] JsonValue toJson() const;
    [[nodiscard]] static ScanSummary fromJson(const JsonValue& json); // throws JsonDecodingError

    friend bool operator==(const ScanSummary&, const ScanSummary&) = default;
};

} // namespace kestrow
