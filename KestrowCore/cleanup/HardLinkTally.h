#pragma once

#include "platform/FileStatus.h"

#include <cstdint>
#include <map>
#include <utility>

namespace kestrow {

// The regular files of a set of items that have more names than one, to tell how much of what
// the items hold is also held by names outside them: bytes that stay on the disk when the items
// go, even once the Trash is emptied. A plain value; tallies of several items add up.
class HardLinkTally {
public:
    // Counts one name of a regular file; files with a single name are passed over.
    void add(const FileStatus& status);
    void merge(const HardLinkTally& other);

    // Allocated bytes of the files with names outside what was counted.
    [[nodiscard]] std::int64_t bytesHeldElsewhere() const;

private:
    struct File {
        std::uint64_t linkCount = 0;
        std::uint64_t namesCounted = 0;
        std::int64_t allocatedBytes = 0;
    };
    std::map<std::pair<std::uint64_t, std::uint64_t>, File> m_files; // by device and inode
};

} // namespace kestrow
