#pragma once

#include "presentation/RiskFilter.h"
#include "state/AppState.h"
#include "storage/CategorySummary.h"

#include <QString>

#include <vector>

namespace kestrow {

// What the Sweep screen shows of the last scan, category by category.
class SweepScreen {
public:
    enum class State { scanning, noScan, rows };
    // What stands where the rows go.
    enum class Rows { handsOff, nothingMatches, rows };

    [[nodiscard]] static State state(const AppState& appState);
    // The categories of the last scan, largest first, that pass the filter.
    [[nodiscard]] static std::vector<CategorySummary> filteredRows(const std::optional<ScanResult>& scanResult,
                                                                   RiskFilter filter);
    [[nodiscard]] static Rows rows(const std::optional<ScanResult>& scanResult, RiskFilter filter);
    // Everything under the filter that is not kept, review rows included.
    [[nodiscard]] static std::int64_t totalBytes(const std::vector<CategorySummary>& rows);
    [[nodiscard]] static QString totalAccessibilityText(const std::vector<CategorySummary>& rows);
    [[nodiscard]] static QString itemCountText(const CategorySummary& row);
    [[nodiscard]] static QString rowIcon(StorageCategory category);
    [[nodiscard]] static QString rowAccessibilityText(const CategorySummary& row);
};

} // namespace kestrow
