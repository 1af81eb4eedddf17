#include "scan/ItemMeasurer.h"

#include "platform/InodeKey.h"
#include "platform/WalkCrew.h"
#include "support/TimeStamp.h"

#include <algorithm>
#include <limits>
#include <unordered_map>

namespace kestrow {

namespace {

// What the files of a walk add up to.
struct Totals {
    std::int64_t allocatedBytes = 0;
    std::int64_t logicalBytes = 0;
    std::int64_t latestAccess = std::numeric_limits<std::int64_t>::min();
    std::int64_t latestModification = std::numeric_limits<std::int64_t>::min();
    bool sawDates = false;

    void add(const FileStatus& status)
    {
        allocatedBytes += status.allocatedSize;
        logicalBytes += status.size;
        latestAccess = std::max(latestAccess, status.accessedNanoseconds);
        latestModification = std::max(latestModification, status.modifiedNanoseconds);
        sawDates = true;
    }

    void add(const Totals& other)
    {
        allocatedBytes += other.allocatedBytes;
        logicalBytes += other.logicalBytes;
        latestAccess = std::max(latestAccess, other.latestAccess);
        latestModification = std::max(latestModification, other.latestModification);
        sawDates = sawDates || other.sawDates;
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
        // Only a file with several names can be met twice, so only those are kept aside, to be
        // counted once when the walk is over, whichever thread met which name.
        if (status.linkCount > 1)
            m_linked.try_emplace({status.device, status.inode}, status);
        else
            m_totals.add(status);
    }

    void unreadableDirectory(const QString&, int errorCode) override
    {
        if (m_isPermissionError && m_isPermissionError(errorCode))
            requiresFullDiskAccess = true;
    }

    [[nodiscard]] std::unique_ptr<WalkSink> split() const override
    {
        return std::make_unique<MeasuringSink>(m_isPermissionError);
    }

    void join(WalkSink& part) override
    {
        auto& other = static_cast<MeasuringSink&>(part);
        fileCount += other.fileCount;
        requiresFullDiskAccess = requiresFullDiskAccess || other.requiresFullDiskAccess;
        m_totals.add(other.m_totals);
        m_linked.merge(other.m_linked);
    }

    // All the walk saw, each file with several names once.
    [[nodiscard]] Totals totals() const
    {
        Totals all = m_totals;
        for (const auto& [key, status] : m_linked)
            all.add(status);
        return all;
    }

    std::int64_t fileCount = 0;
    bool requiresFullDiskAccess = false;

private:
    const ItemMeasurer::PermissionErrorTest& m_isPermissionError;
    Totals m_totals;
    std::unordered_map<InodeKey, FileStatus, InodeKeyHash> m_linked;
};

} // namespace

ItemMeasurer::ItemMeasurer(const FileManager& fileManager, PermissionErrorTest isPermissionError,
                           std::shared_ptr<ThermalGovernor> thermalGovernor)
    : m_fileManager(fileManager)
    , m_isPermissionError(std::move(isPermissionError))
    , m_thermalGovernor(std::move(thermalGovernor))
{
}

std::size_t ItemMeasurer::threads() const
{
    if (!m_thermalGovernor)
        return WalkOptions::allProcessors().threads;
    return static_cast<std::size_t>(std::max(m_thermalGovernor->currentProfile().maxParallelTasks, 1));
}

WalkOptions ItemMeasurer::walkOptions(const std::stop_token& stop) const
{
    if (!m_thermalGovernor)
        return WalkOptions::allProcessors();
    ThermalGovernor& governor = *m_thermalGovernor;
    return {
        .threads = threads(),
        // Each thread waits out a pause at its next folder; a stop ends the walk.
        .pace =
            [&governor, stop] {
                if (!governor.currentProfile().isPaused)
                    return true;
                try {
                    governor.checkpoint(stop);
                    return true;
                } catch (const CancellationError&) {
                    return false;
                }
            },
    };
}

MeasuredMetrics ItemMeasurer::measureItem(const QString& path, std::stop_token stop) const
{
    const WalkOptions options = walkOptions(stop);
    return measureItem(path, std::move(stop), options);
}

MeasuredMetrics ItemMeasurer::measureItem(const QString& path, WalkCrew& crew, std::size_t worker) const
{
    WalkOptions options = walkOptions(crew.stopToken());
    options.crew = &crew;
    options.worker = worker;
    return measureItem(path, crew.stopToken(), options);
}

MeasuredMetrics ItemMeasurer::measureItem(const QString& path, std::stop_token stop, const WalkOptions& options) const
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
    m_fileManager.walk(item, sink, std::move(stop), options);
    const Totals totals = sink.totals();
    MeasuredMetrics metrics{
        .allocatedBytes = totals.allocatedBytes,
        .logicalBytes = totals.logicalBytes,
        // Every existing folder counts as holding at least one file, empty ones too.
        .fileCount = std::max<std::int64_t>(sink.fileCount, 1),
        .lastAccessedDate = std::nullopt,
        .lastModifiedDate = std::nullopt,
        .requiresFullDiskAccess = sink.requiresFullDiskAccess,
    };
    if (totals.sawDates) {
        metrics.lastAccessedDate = TimeStamp::fromUnixNanoseconds(totals.latestAccess);
        metrics.lastModifiedDate = TimeStamp::fromUnixNanoseconds(totals.latestModification);
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
