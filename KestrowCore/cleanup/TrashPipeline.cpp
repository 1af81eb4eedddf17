#include "cleanup/TrashPipeline.h"

#include "platform/SystemMessage.h"

#include "platform/LinkResolver.h"
#include "platform/PathText.h"
#include "platform/ProcessFolders.h"
#include "safety/SandboxValidator.h"

#include <QDateTime>
#include <QUuid>

#include <cerrno>
#include <system_error>

namespace kestrow {

namespace {

// Every regular file below the root, each name counted: no hard-link bookkeeping here.
class CountingSink : public WalkSink {
public:
    explicit CountingSink(const QString& root)
        : m_root(root)
    {
    }

    void regularFile(const FileStatus& status) override
    {
        ++fileCount;
        allocatedBytes += status.allocatedSize;
        logicalBytes += status.size;
    }

    void unreadableDirectory(const QString& path, int) override
    {
        if (path == m_root)
            rootUnreadable = true;
    }

    void mountPoint(const QString& path) override { mountPoints.append(path); }

    [[nodiscard]] std::unique_ptr<WalkSink> split() const override { return std::make_unique<CountingSink>(m_root); }

    void join(WalkSink& part) override
    {
        const auto& other = static_cast<const CountingSink&>(part);
        allocatedBytes += other.allocatedBytes;
        logicalBytes += other.logicalBytes;
        fileCount += other.fileCount;
        rootUnreadable = rootUnreadable || other.rootUnreadable;
        mountPoints.append(other.mountPoints);
    }

    std::int64_t allocatedBytes = 0;
    std::int64_t logicalBytes = 0;
    std::int64_t fileCount = 0;
    bool rootUnreadable = false;
    QStringList mountPoints;

private:
    const QString& m_root;
};

TrashItemRecord makeRecord(const QString& path, const MeasuredMetrics& metrics, TrashItemStatus status,
                           std::optional<QString> trashPath = std::nullopt,
                           std::optional<QString> errorMessage = std::nullopt)
{
    return TrashItemRecord{
        .id = QUuid::createUuid(),
        .sourcePath = path,
        .trashPath = std::move(trashPath),
        .allocatedBytes = metrics.allocatedBytes,
        // A record never shows a logical size of nothing for something that holds space.
        .logicalBytes = metrics.logicalBytes == 0 ? metrics.allocatedBytes : metrics.logicalBytes,
        .fileCount = metrics.fileCount,
        .status = status,
        .errorMessage = std::move(errorMessage),
    };
}

} // namespace

TrashPipeline::TrashPipeline(Options options)
    : m_fileManager(options.fileManager ? std::move(options.fileManager) : std::make_shared<FileManager>())
    , m_auditLogger(std::move(options.auditLogger))
    , m_homeURL(options.homeURL.isEmpty() ? ProcessFolders::home() : std::move(options.homeURL))
    , m_onAuditFailure(std::move(options.onAuditFailure))
{
}

TrashSummary TrashPipeline::trash(const QStringList& urls, bool dryRun, const QString& client) const
{
    if (urls.isEmpty())
        throw TrashPipelineError::emptyTargetList();
    return run(urls, dryRun, false, client);
}

TrashSummary TrashPipeline::purgePermanently(const QStringList& urls, bool confirmed, const QString& client) const
{
    if (!confirmed)
        throw TrashPipelineError::unconfirmedPermanentPurge();
    if (urls.isEmpty())
        throw TrashPipelineError::emptyTargetList();
    return run(urls, false, true, client);
}

TrashSummary TrashPipeline::run(const QStringList& urls, bool dryRun, bool permanentPurge, const QString& client) const
{
    const QDateTime startedAt = QDateTime::currentDateTimeUtc();
    const QUuid operationId = QUuid::createUuid();
    std::vector<TrashItemRecord> records;
    records.reserve(static_cast<size_t>(urls.size()));
    for (const QString& url : urls)
        records.push_back(processItem(url, dryRun, permanentPurge));
    TrashSummary summary(operationId, dryRun, permanentPurge, std::move(records), startedAt,
                         QDateTime::currentDateTimeUtc());

    if (m_auditLogger) {
        QStringList freedPaths;
        for (const TrashItemRecord& record : summary.records()) {
            if (record.status.countsAsFreed())
                freedPaths.append(record.sourcePath);
        }
        const AuditOperationType type = permanentPurge ? AuditOperationType::purge
                                        : dryRun       ? AuditOperationType::dryRun
                                                       : AuditOperationType::trash;
        try {
            m_auditLogger->record(operationId, type, summary.successCount(), summary.totalAllocatedBytesFreed(),
                                  freedPaths, client, summary.durationSeconds() * 1000.0,
                                  QDateTime::currentDateTimeUtc());
        } catch (const AuditLoggerError& error) {
            // The run happened whether or not the log could take its line.
            if (m_onAuditFailure)
                m_onAuditFailure(error);
        }
    }
    return summary;
}

TrashItemRecord TrashPipeline::processItem(const QString& path, bool dryRun, bool permanentPurge) const
{
    try {
        SandboxValidator::validate(path, m_homeURL, m_fileManager->systemCalls());
    } catch (const SandboxSecurityError& error) {
        return makeRecord(path, {.fileCount = 1}, TrashItemStatus::failed, std::nullopt,
                          QStringLiteral("Sandbox violation: ") + error.description());
    }
    if (!m_fileManager->fileExists(path)) {
        return makeRecord(path, {.fileCount = 1}, TrashItemStatus::failed, std::nullopt,
                          QStringLiteral("File does not exist: ") + path);
    }

    // From here on the item is reached through its parent's descriptor: whatever is done to
    // the path text meanwhile, the object measured and moved is the one opened here.
    const QString actingPath = pathActedOn(path);
    if (actingPath != PathText::standardizedLocation(path)) {
        try {
            SandboxValidator::validate(actingPath, m_homeURL, m_fileManager->systemCalls());
        } catch (const SandboxSecurityError& error) {
            return makeRecord(path, {.fileCount = 1}, TrashItemStatus::failed, std::nullopt,
                              QStringLiteral("Sandbox violation: ") + error.description());
        }
    }
    AnchorOutcome anchored = m_fileManager->anchor(actingPath);
    if (!anchored.item) {
        if (anchored.errorCode == ENOENT)
            return makeRecord(path, {.fileCount = 1}, TrashItemStatus::failed, std::nullopt,
                              QStringLiteral("File does not exist: ") + path);
        return makeRecord(path, {.fileCount = 1}, TrashItemStatus::failed, std::nullopt,
                          QStringLiteral("Could not open the folder holding \u201c%1\u201d: %2")
                              .arg(path, SystemMessage::of(anchored.errorCode)));
    }
    const AnchoredItem& item = *anchored.item;

    // Measured first: once moved, nothing is left here to measure.
    const ItemMeasure measure = measureAnchored(item);
    if (!measure.mountPoints.isEmpty()) {
        return makeRecord(path, measure.metrics, TrashItemStatus::failed, std::nullopt,
                          QStringLiteral("\u201c%1\u201d holds a mount point at \u201c%2\u201d; nothing was moved.")
                              .arg(path, measure.mountPoints.first()));
    }
    if (dryRun)
        return makeRecord(path, measure.metrics, TrashItemStatus::simulated);
    const FileOperationResult outcome =
        permanentPurge ? m_fileManager->removeItem(item) : m_fileManager->trashItem(item);
    if (!outcome.succeeded)
        return makeRecord(path, measure.metrics, TrashItemStatus::failed, std::nullopt, outcome.errorDescription);
    return makeRecord(path, measure.metrics, TrashItemStatus::success,
                      permanentPurge ? std::nullopt : outcome.resultingPath);
}

QString TrashPipeline::pathActedOn(const QString& path) const
{
    // The folders above the item resolved, the item itself not: "link/" and "link" both name
    // the link. Where a folder on the way cannot be examined the text stays as it is, and
    // anchoring, which follows no link, fails on it.
    const QString location = PathText::standardizedLocation(path);
    const QString folder = PathText::removingDotComponents(
        LinkResolver(m_fileManager->systemCalls()).resolvingSymbolicLinks(PathText::parent(location)));
    return PathText::appending(folder, PathText::lastComponent(location));
}

MeasuredMetrics TrashPipeline::computeItemMetrics(const QString& path) const
{
    if (!m_fileManager->fileExists(path))
        return {};
    const AnchorOutcome anchored = m_fileManager->anchor(pathActedOn(path));
    if (!anchored.item)
        return {.fileCount = 1};
    return measureAnchored(*anchored.item).metrics;
}

TrashPipeline::ItemMeasure TrashPipeline::measureAnchored(const AnchoredItem& item) const
{
    // A link is measured as itself, as it is what moves; so is any other non-folder.
    if (!item.status.isDirectory()) {
        return {
            .metrics = {.allocatedBytes = item.status.allocatedSize, .logicalBytes = item.status.size, .fileCount = 1}};
    }
    CountingSink sink(item.path);
    m_fileManager->walk(item, sink, {}, WalkOptions::allProcessors());
    // In path order, whichever thread met which.
    sink.mountPoints.sort();
    ItemMeasure measure{.mountPoints = sink.mountPoints};
    if (sink.rootUnreadable && sink.fileCount == 0)
        measure.metrics = {.fileCount = 1};
    else
        measure.metrics = {.allocatedBytes = sink.allocatedBytes,
                           .logicalBytes = sink.logicalBytes,
                           .fileCount = std::max<std::int64_t>(sink.fileCount, 1)};
    return measure;
}

} // namespace kestrow
