#pragma once

#include "storage/RiskTier.h"
#include "storage/StorageCategory.h"
#include "support/JsonValue.h"

#include <cstdint>

namespace kestrow {

// Totals of one category within a scan.
struct CategorySummary {
    StorageCategory category = StorageCategory::developerCache;
    RiskTier riskTier = RiskTier::safeToDelete;
    std::int64_t itemCount = 0;
    std::int64_t totalLogicalBytes = 0;
    std::int64_t totalAllocatedBytes = 0;
    std::int64_t safeToDeleteBytes = 0;
    std::int64_t reviewRequiredBytes = 0;
    bool requiresFullDiskAccess = false;

    [[nodiscard]] QString id() const { return category.rawValue(); }
    [[nodiscard]] QString formattedAllocatedBytes() const;

    [[nodiscard]] JsonValue toJson() const;
    [[nodiscard]] static CategorySummary fromJson(const JsonValue& json); // throws JsonDecodingError

    friend bool operator==(const CategorySummary&, const CategorySummary&) = default;
};

} // namespace kestrow
