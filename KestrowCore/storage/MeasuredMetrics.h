#pragma once

#include <QDateTime>

#include <cstdint>
#include <optional>

namespace kestrow {

// Sizes, count and latest dates of one measured location.
struct MeasuredMetrics {
    std::int64_t allocatedBytes = 0;
    std::int64_t logicalBytes = 0;
    std::int64_t fileCount = 0;
    std::optional<QDateTime> lastAccessedDate;
    std::optional<QDateTime> lastModifiedDate;
    bool requiresFullDiskAccess = false;

    // Any existing location has content: a folder measures at least one file.
    [[nodiscard]] bool hasContent() const { return fileCount > 0 || logicalBytes >= 1; }

    friend bool operator==(const MeasuredMetrics&, const MeasuredMetrics&) = default;
};

} // namespace kestrow
