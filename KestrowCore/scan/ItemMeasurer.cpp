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
    // The item itself, as the clean-up acts on it: "link/" names the entry "link" as much as
    // "link" does, and a link is measured as the link, whatever it leads to.
    QString item = path;
    while (item.size() > 1 && item.endsWith(QLatin1Char('/')))
        item.chop(1);
    // Nothing there, a link that leads nowhere included, measures as nothing.
    if (!m_fileManager.fileExists(item))
        return {};
    const std::optional<FileStatus> status = m_fileManager.status(item);
    if (!status || !status->isDirectory())
        return measureSingleFile(item);

    MeasuringSink sink(m_isPermissionError);
    m_fileManager.walk(item, sink, std::move(stop));
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
    // A link is measured as itself: its own length and blocks, never its target's.
    const std::optional<FileStatus> status = m_fileManager.status(path);
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
