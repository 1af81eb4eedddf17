#include "apps/BundleStorage.h"

#include "platform/InodeKey.h"
#include "platform/LinkResolver.h"

#include <unordered_set>

namespace kestrow {

namespace {

// Sums a bundle's regular files, each inode once.
class BundleSizeSink : public WalkSink {
public:
    void regularFile(const FileStatus& status) override
    {
        // Only a file with several names can be met twice, so only those need remembering.
        if (status.linkCount > 1 && !m_seen.insert({status.device, status.inode}).second)
            return;
        logicalBytes += status.size;
        allocatedBytes += status.allocatedSize;
    }
    void unreadableDirectory(const QString&, int) override {}

    std::int64_t allocatedBytes = 0;
    std::int64_t logicalBytes = 0;

private:
    std::unordered_set<InodeKey, InodeKeyHash> m_seen;
};

} // namespace

BundleStorage BundleStorage::measure(const FileManager& fileManager, const QString& bundlePath)
{
    const QString where = LinkResolver(fileManager.systemCalls()).resolvingSymbolicLinks(bundlePath);
    // An AppImage or a desktop entry is a single file.
    if (const std::optional<FileStatus> status = fileManager.status(where); status && status->isRegularFile())
        return {status->allocatedSize, status->size};
    BundleSizeSink sink;
    fileManager.walk(where, sink);
    return {sink.allocatedBytes, sink.logicalBytes};
}

} // namespace kestrow
