#include "scan/ItemMeasurer.h"

#include "support/TimeStamp.h"

#include <unordered_set>

namespace kestrow {

namespace {

struct InodeKey {
    std::uint64_t dev;
    std::uint64_t ino;
    bool operator==(const InodeKey&) const = default;
};

struct InodeKeyHash {
    size_t operator()(const InodeKey& key) const noexcept
    {
        return std::hash<std::uint64_t>{}(key.ino * 0x9E3779B97F4A7C15ULL ^ key.dev);
    }
};

class MeasuringSink : public WalkSink {
public:
    explicit MeasuringSink(const ItemMeasurer::PermissionErrorTest& isPermissionError)
        : m_isPermissionError(isPermissionError)
    {
    }

    void regularFile(const FileStatus& status) override
    {
        ++fileCount;
        // Only a file with several names can be met twice, so only those need remembering.
        if (status.linkCount > 1 && !m_seen.insert({status.device, status.inode}).second)
            return;
        logicalBytes += status.size;
        allocatedBytes += status.allocatedSize;
        latestAccess = std::max(latestAccess, status.accessedNanoseconds);
        latestModification = std::max(latestModification, status.modifiedNanoseconds);
        sawDates = true;
    }

    void unreadableDirectory(const QString&, int errorCode) override
    {
        if (m_isPermissionError && m_isPermissionError(errorCode))
            requiresFullDiskAccess = true;
    }

    std::int64_t allocatedBytes = 0;
    std::int64_t logicalBytes = 0;
    std::int64_t fileCount = 0;
    std::int64_t latestAccess = std::numeric_limits<std::int64_t>::min();
    std::int64_t latestModification = std::numeric_limits<std::int64_t>::min();
    bool sawDates = false;
    bool requiresFullDiskAccess = false;

private:
    const ItemMeasurer::PermissionErrorTest& m_isPermissionError;
    std::unordered_set<InodeKey, InodeKeyHash> m_seen;
};

} // namespace

ItemMeasurer::ItemMeasurer(const FileManager& fileManager, PermissionErrorTest isPermissionError)
    : m_fileManager(fileManager)
    , m_isPermissionError(std::move(isPermissionError))
{
}

MeasuredMetrics ItemMeasurer::measureItem(const QString& path, std::stop_token stop) const
{
    bool isDirectory = false;
    if (!m_fileManager.fileExists(path, &isDirectory))
        return {};
    if (!isDirectory)
        return measureSingleFile(path);

    MeasuringSink sink(m_isPermissionError);
    m_fileManager.walk(path, sink, std::move(stop));
    MeasuredMetrics metrics{
        .allocatedBytes = sink.allocatedBytes,
        .logicalBytes = sink.logicalBytes,
        // Every existing folder counts as holding at least one file, empty ones too.
        .fileCount = std::max<std::int64_t>(sink.fileCount, 1),
        .lastAccessedDate = std::nullopt,
        .lastModifiedDate = std::nullopt,
        .requiresFullDiskAccess = sink.requiresFullDiskAccess,
    };
    if (sink.sawDates) {
        metrics.lastAccessedDate = TimeStamp::fromUnixNanoseconds(sink.latestAccess);
        metrics.lastModifiedDate = TimeStamp::fromUnixNanoseconds(sink.latestModification);
    }
    return metrics;
}

MeasuredMetrics ItemMeasurer::measureSingleFile(const QString& path) const
{
    // A link to a file is measured as the file, as an ordinary open would see it.
    const std::optional<FileStatus> status = m_fileManager.status(path, true);
    if (!status)
        return MeasuredMetrics{.fileCount = 1};
    return MeasuredMetrics{
        .allocatedBytes = status->allocatedSize,
        .logicalBytes = status->size,
        .fileCount = 1,
        .lastAccessedDate = TimeStamp::fromUnixNanoseconds(status->accessedNanoseconds),
        .lastModifiedDate = TimeStamp::fromUnixNanoseconds(status->modifiedNanoseconds),
        .requiresFullDiskAccess = false,
    };
}

} // namespace kestrow
