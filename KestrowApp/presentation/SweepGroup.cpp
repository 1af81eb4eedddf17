#include "presentation/SweepGroup.h"

#include <algorithm>
#include <map>

namespace kestrow {

namespace {

constexpr std::size_t namesPerGroup = 3;
constexpr std::size_t shownGroups = 6;

struct CategoryTotals {
    std::int64_t total = 0;
    std::int64_t safe = 0;
    std::optional<std::int64_t> review;
    QStringList names;
};

// The last component of a path of two components or more.
QString lastName(const QString& path)
{
    const QStringList parts = path.split(QLatin1Char('/'), Qt::SkipEmptyParts);
    return parts.size() < 2 ? QString() : parts.last();
}

std::optional<RiskTier> groupRisk(const CategoryTotals& totals)
{
    if (totals.review) {
        if (totals.safe >= 1 && totals.safe >= *totals.review)
            return RiskTier::safeToDelete;
        if (*totals.review >= 1)
            return RiskTier::reviewRequired;
        return std::nullopt;
    }
    return totals.safe > 0 ? std::optional<RiskTier>(RiskTier::safeToDelete) : std::nullopt;
}

} // namespace

std::vector<SweepGroup> SweepGroup::groups(const std::optional<ScanResult>& scanResult)
{
    if (!scanResult)
        return {};
    std::map<StorageCategory, CategoryTotals> byCategory;
    for (const DiscoveredItem& item : scanResult->items) {
        if (item.allocatedSizeBytes <= 0)
            continue;
        CategoryTotals& totals = byCategory[item.category];
        totals.total += item.allocatedSizeBytes;
        if (item.riskTier == RiskTier::safeToDelete)
            totals.safe += item.allocatedSizeBytes;
        if (item.riskTier == RiskTier::reviewRequired)
            totals.review = totals.review.value_or(0) + item.allocatedSizeBytes;
        const QString name = lastName(item.path);
        if (!name.isEmpty() && !totals.names.contains(name) &&
            static_cast<std::size_t>(totals.names.size()) < namesPerGroup)
            totals.names.append(name);
    }

    std::vector<SweepGroup> groups;
    for (const auto& [category, totals] : byCategory)
        if (const std::optional<RiskTier> risk = groupRisk(totals))
            groups.push_back({.id = category,
                              .name = category.displayName(),
                              .hint = totals.names.join(QStringLiteral(", ")),
                              .risk = *risk,
                              .bytes = totals.total});
    std::stable_sort(groups.begin(), groups.end(), [](const SweepGroup& a, const SweepGroup& b) {
        const bool aSafe = a.risk == RiskTier::safeToDelete;
        const bool bSafe = b.risk == RiskTier::safeToDelete;
        return aSafe != bSafe ? aSafe : a.bytes > b.bytes;
    });
    if (groups.size() > shownGroups)
        groups.resize(shownGroups);
    return groups;
}

} // namespace kestrow
