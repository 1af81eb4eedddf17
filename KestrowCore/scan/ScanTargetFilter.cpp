#include "scan/ScanTargetFilter.h"

#include "platform/LinkResolver.h"
#include "platform/PathText.h"
#include "scan/ScanTargetTable.h"

#include <algorithm>

namespace kestrow {

namespace {

bool liesInside(const QString& inner, const QString& outer)
{
    if (outer == QLatin1String("/"))
        return inner.startsWith(QLatin1Char('/'));
    return inner.startsWith(outer + QLatin1Char('/'));
}

QString resolvedAndStandardized(const QString& path)
{
    return PathText::standardizing(LinkResolver().resolvingSymbolicLinks(path));
}

} // namespace

ScanTargetFilter::ScanTargetFilter(std::set<ScanTarget> disabledTargets, const QStringList& excludedPaths,
                                   QString homeURL)
    : m_disabledTargets(std::move(disabledTargets))
    , m_homeURL(std::move(homeURL))
{
    for (const QString& path : excludedPaths)
        if (const auto normalized = normalize(path, m_homeURL))
            m_excludedPaths.append(*normalized);
}

std::optional<QString> ScanTargetFilter::normalize(const QString& path, const QString& homeURL)
{
    const QString trimmed = path.trimmed();
    if (trimmed.isEmpty())
        return std::nullopt;
    const QString expanded = PathText::expandingTilde(trimmed, homeURL);
    if (!expanded.startsWith(QLatin1Char('/')))
        return std::nullopt;
    // Standardising leaves no trailing slash, except on the root itself.
    return PathText::standardizing(expanded);
}

bool ScanTargetFilter::isPassThrough() const
{
    return m_disabledTargets.empty() && m_excludedPaths.isEmpty();
}

std::optional<CategorySet> ScanTargetFilter::categoriesToScan() const
{
    CategorySet owned;
    for (const ScanTarget target : m_disabledTargets)
        for (const StorageCategory category : ScanTargetTable::ownedCategories(target))
            owned.insert(category);
    if (owned.empty())
        return std::nullopt;
    CategorySet remaining;
    for (const StorageCategory category : StorageCategory::allCases())
        if (!owned.contains(category))
            remaining.insert(category);
    return remaining;
}

std::optional<ScanTarget> ScanTargetFilter::disabledTarget(const DiscoveredItem& item) const
{
    const QString path = normalize(item.path, m_homeURL).value_or(item.path);
    for (const ScanTarget target : m_disabledTargets) {
        const auto owned = ScanTargetTable::ownedCategories(target);
        if (std::find(owned.begin(), owned.end(), item.category) != owned.end())
            return target;
        if (item.ruleId) {
            for (const QString& prefix : ScanTargetTable::ruleIdPrefixes(target))
                if (item.ruleId->startsWith(prefix))
                    return target;
        }
        for (const QString& relative : ScanTargetTable::homeRelativePaths(target)) {
            const QString location = PathText::standardizing(PathText::appending(m_homeURL, relative));
            if (path == location || liesInside(path, location))
                return target;
        }
    }
    return std::nullopt;
}

bool ScanTargetFilter::isExcluded(const QString& path) const
{
    if (m_excludedPaths.isEmpty())
        return false;
    const QString pathForms[] = {normalize(path, m_homeURL).value_or(path), resolvedAndStandardized(path)};
    for (const QString& excluded : m_excludedPaths) {
        const QString excludedForms[] = {excluded, resolvedAndStandardized(excluded)};
        for (const QString& candidate : pathForms)
            for (const QString& entry : excludedForms)
                if (candidate == entry || liesInside(candidate, entry) || liesInside(entry, candidate))
                    return true;
    }
    return false;
}

bool ScanTargetFilter::allows(const DiscoveredItem& item) const
{
    return !disabledTarget(item) && !isExcluded(item.path);
}

ScanResult ScanTargetFilter::apply(const ScanResult& result) const
{
    if (isPassThrough())
        return result;
    std::vector<DiscoveredItem> kept;
    std::copy_if(result.items.begin(), result.items.end(), std::back_inserter(kept),
                 [this](const DiscoveredItem& item) { return allows(item); });
    if (kept.size() == result.items.size())
        return result;
    ScanResult filtered = result;
    filtered.items = std::move(kept);
    filtered.summary = ScanSummary::from(filtered.items);
    return filtered;
}

} // namespace kestrow
