#pragma once

#include "scan/ScanTargetFilter.h"
#include "storage/ScanResult.h"
#include "storage/StorageCategory.h"

#include <cstdint>
#include <optional>

namespace kestrow {

// What the user asked of one scan: the categories (none: every one), the targets switched off
// and paths left out, and the smallest item worth showing. It tells the engine what to scan and
// narrows what the engine found.
class ScanRequest {
public:
    explicit ScanRequest(CategorySet categories = {}, ScanTargetFilter filter = {},
                         std::optional<std::int64_t> minimumAllocatedBytes = std::nullopt);

    // The asked categories less those of disabled targets. When that leaves nothing, the asked
    // ones are scanned all the same (an empty set would mean every category) and `narrowed`
    // then removes what they find.
    [[nodiscard]] CategorySet categoriesToScan() const;

    // The result without what the filter rules out and, when a minimum is set, without the
    // items below it, the summary then recounted from the items left.
    [[nodiscard]] ScanResult narrowed(const ScanResult& result) const;

private:
    CategorySet m_categories;
    ScanTargetFilter m_filter;
    std::optional<std::int64_t> m_minimumAllocatedBytes;
};

} // namespace kestrow
