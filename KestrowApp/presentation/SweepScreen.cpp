#include "presentation/SweepScreen.h"

#include "presentation/RiskPill.h"
#include "presentation/Theme.h"

#include <algorithm>

namespace kestrow {

SweepScreen::State SweepScreen::state(const AppState& appState)
{
    if (appState.isScanning())
        return State::scanning;
    return appState.scanResult() ? State::rows : State::noScan;
}

std::vector<CategorySummary> SweepScreen::filteredRows(const std::optional<ScanResult>& scanResult, RiskFilter filter)
{
    if (!scanResult)
        return {};
    std::vector<CategorySummary> rows = scanResult->summary.categoryBreakdown;
    std::stable_sort(rows.begin(), rows.end(), [](const CategorySummary& a, const CategorySummary& b) {
        return a.totalAllocatedBytes > b.totalAllocatedBytes;
    });
    std::erase_if(rows, [filter](const CategorySummary& row) { return !filter.passes(row.riskTier); });
    return rows;
}

SweepScreen::Rows SweepScreen::rows(const std::optional<ScanResult>& scanResult, RiskFilter filter)
{
    if (filteredRows(scanResult, RiskFilter::all).empty())
        return Rows::handsOff;
    return filteredRows(scanResult, filter).empty() ? Rows::nothingMatches : Rows::rows;
}

std::int64_t SweepScreen::totalBytes(const std::vector<CategorySummary>& rows)
{
    std::int64_t total = 0;
    for (const CategorySummary& row : rows)
        if (row.riskTier != RiskTier::keep)
            total += row.totalAllocatedBytes;
    return total;
}

QString SweepScreen::totalAccessibilityText(const std::vector<CategorySummary>& rows)
{
    return QStringLiteral("Ready to sweep, ") + Theme::byteText(totalBytes(rows));
}

QString SweepScreen::itemCountText(const CategorySummary& row)
{
    return QString::number(row.itemCount) + QStringLiteral(" items");
}

QString SweepScreen::rowIcon(StorageCategory category)
{
    switch (category) {
    case StorageCategory::developerCache:
        return QStringLiteral("shippingbox.fill");
    case StorageCategory::aiModelWeights:
        return QStringLiteral("cpu");
    case StorageCategory::dockerVM:
        return QStringLiteral("externaldrive.badge.xmark");
    case StorageCategory::xcodeArtifacts:
        return QStringLiteral("hammer.fill");
    case StorageCategory::strayDependencies:
        return QStringLiteral("folder.badge.gearshape");
    case StorageCategory::systemCaches:
    case StorageCategory::systemLogs:
    case StorageCategory::crashReports:
        return QStringLiteral("archivebox");
    default:
        return QStringLiteral("doc");
    }
}

QString SweepScreen::rowAccessibilityText(const CategorySummary& row)
{
    return row.category.displayName() + QStringLiteral(", ") + QString::number(row.itemCount) +
           QStringLiteral(" items, ") + RiskPill::forTier(row.riskTier).text + QStringLiteral(", ") +
           Theme::byteText(row.totalAllocatedBytes);
}

} // namespace kestrow
