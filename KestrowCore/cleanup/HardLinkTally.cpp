#include "cleanup/HardLinkTally.h"

namespace kestrow {

void HardLinkTally::add(const FileStatus& status)
{
    if (!status.isRegularFile() || status.linkCount < 2)
        return;
    File& file = m_files[{status.device, status.inode}];
    file.linkCount = status.linkCount;
    file.allocatedBytes = status.allocatedSize;
    ++file.namesCounted;
}

void HardLinkTally::merge(const HardLinkTally& other)
{
    for (const auto& [key, file] : other.m_files) {
        File& mine = m_files[key];
        mine.linkCount = file.linkCount;
        mine.allocatedBytes = file.allocatedBytes;
        mine.namesCounted += file.namesCounted;
    }
}

std::int64_t HardLinkTally::bytesHeldElsewhere() const
{
    std::int64_t bytes = 0;
    for (const auto& [key, file] : m_files) {
        if (file.namesCounted < file.linkCount)
            bytes += file.allocatedBytes;
    }
    return bytes;
}

} // namespace kestrow
