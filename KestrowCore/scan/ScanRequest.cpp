#include "scan/ScanRequest.h"

#include <algorithm>
#include <iterator>

namespace kestrow {

ScanRequest::ScanRequest(CategorySet categories, ScanTargetFilter filter,
                         std::optional<std::int64_t> minimumAllocatedBytes)
    : m_categories(std::move(categories))
    , m_filter(std::move(filter))
    , m_minimumAllocatedBytes(minimumAllocatedBytes)
{
}

CategorySet ScanRequest::categoriesToScan() const
{
    const auto allowed = m_filter.categoriesToScan();
    if (!allowed)
        return m_categories;
    if (m_categories.empty())
        return *allowed;
    CategorySet both;
    std::set_intersection(m_categories.begin(), m_categories.end(), allowed->begin(), allowed->end(),
                          std::inserter(both, both.end()));
    return both.empty() ? m_categories : both;
}

ScanResult ScanRequest::narrowed(const ScanResult& result) const
{
    ScanResult narrowed = m_filter.apply(result);
    if (m_minimumAllocatedBytes) {
        std::erase_if(narrowed.items, [minimum = *m_minimumAllocatedBytes](const DiscoveredItem& item) {
            return item.allocatedSizeBytes < minimum;
        });
        narrowed.summary = ScanSummary::from(narrowed.items);
    }
    return narrowed;
}

} // namespace kestrow
