#include "presentation/FootprintPanel.h"

#include "presentation/RiskPill.h"
#include "presentation/Theme.h"

#include <algorithm>

namespace kestrow {

QString FootprintPanel::title()
{
    return QStringLiteral("Storage Footprint");
}

bool FootprintPanel::isPending(const AppState& state)
{
    return !state.scanResult();
}

QString FootprintPanel::pendingTitle()
{
    return QStringLiteral("Deep scan pending");
}

QString FootprintPanel::pendingDetail()
{
    return QStringLiteral("Run a scan to measure package caches, AI models, and junk.");
}

std::vector<FootprintPanel::Row> FootprintPanel::rows(const AppState& state)
{
    if (isPending(state))
        return {};
    std::vector<CategorySummary> found;
    for (const CategorySummary& summary : state.scanResult()->summary.categoryBreakdown)
        if (summary.itemCount > 0)
            found.push_back(summary);
    std::stable_sort(found.begin(), found.end(),
                     [](const auto& a, const auto& b) { return a.totalAllocatedBytes > b.totalAllocatedBytes; });

    std::vector<Row> rows;
    for (const CategorySummary& summary : found)
        rows.push_back({.symbol = summary.category.iconName(),
                        .label = summary.category.displayName(),
                        .value = Theme::byteText(summary.totalAllocatedBytes),
                        .color = RiskPill::forTier(summary.riskTier).color});
    std::int64_t orphanBytes = 0;
    for (const AppLeftover& leftover : state.leftovers())
        orphanBytes += leftover.allocatedSizeBytes;
    rows.push_back(
        {.symbol = StorageCategory(StorageCategory::leftovers).iconName(),
         .label = QStringLiteral("Orphans (") + QString::number(state.leftovers().size()) + QStringLiteral(" items)"),
         .value = Theme::byteText(orphanBytes),
         .color = RiskPill::forTier(RiskTier::reviewRequired).color});
    return rows;
}

} // namespace kestrow
