#pragma once

#include "storage/RiskTier.h"
#include "storage/ScanResult.h"
#include "storage/StorageCategory.h"

#include <QString>

#include <cstdint>
#include <optional>
#include <vector>

namespace kestrow {

// One row of "Ready to sweep" on the Pulse screen: a category with the first names found in it.
struct SweepGroup {
    StorageCategory id = StorageCategory::developerCache;
    QString name;
    QString hint;
    RiskTier risk = RiskTier::safeToDelete;
    std::int64_t bytes = 0; // everything found in the category, kept items included

    // Safe groups first, then by size; categories with nothing safe or to review are left out;
    // at most six.
    [[nodiscard]] static std::vector<SweepGroup> groups(const std::optional<ScanResult>& scanResult);
};

} // namespace kestrow
