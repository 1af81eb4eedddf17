#pragma once

#include "platform/FileManager.h"

#include <QDateTime>

#include <cstdint>
#include <optional>
#include <set>
#include <utility>

namespace kestrow {

// What one footprint item measured.
struct SizingMetrics {
    std::int64_t allocatedBytes = 0;
    std::int64_t logicalBytes = 0;
    std::int64_t fileCount = 0;
    std::optional<QDateTime> lastModifiedDate;
    bool isDirectory = false;
    bool isSymlink = false;

    friend bool operator==(const SizingMetrics&, const SizingMetrics&) = default;
};

// Measures the items of one footprint, counting the bytes of each file once however many of
// the footprint's items hold a name of it: the device and inode pairs seen span all the
// measurer's calls. Links are measured as links, never followed; every entry that is not a
// folder counts as a file. One per footprint run; not shared between threads.
class FootprintMeasurer {
public:
    explicit FootprintMeasurer(const FileManager& fileManager);

    [[nodiscard]] SizingMetrics measureItem(const QString& path);

private:
    class Walk;

    // The bytes of a file whose object was not yet counted; nothing for a second name.
    void addFile(const FileStatus& status, SizingMetrics& metrics);

    const FileManager& m_fileManager;
    std::set<std::pair<std::uint64_t, std::uint64_t>> m_seenInodes;
};

} // namespace kestrow
