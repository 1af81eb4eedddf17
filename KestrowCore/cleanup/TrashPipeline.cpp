#include "cleanup/TrashPipeline.h"

#include "safety/SandboxValidator.h"

#include <QDateTime>
#include <QDir>
#include <QUuid>

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

    std::int64_t allocatedBytes = 0;
    std::int64_t logicalBytes = 0;
    std::int64_t fileCount = 0;
    bool rootUnreadable = false;

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
    , m_homeURL(options.homeURL.isEmpty() ? QDir::homePath() : std::move(options.homeURL))
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
        SandboxValidator::validate(path, m_homeURL);
    } catch (const SandboxSecurityError& error) {
        return makeRecord(path, {.fileCount = 1}, TrashItemStatus::failed, std::nullopt,
                          QStringLiteral("Sandbox violation: ") + error.description());
    }
    if (!m_fileManager->fileExists(path)) {
        return makeRecord(path, {.fileCount = 1}, TrashItemStatus::failed, std::nullopt,
                          QStringLiteral("File does not exist: ") + path);
    }

    // Measured first: once moved, nothing is left here to measure.
    const MeasuredMetrics metrics = computeItemMetrics(path);
    if (dryRun)
        return makeRecord(path, metrics, TrashItemStatus::simulated);
    const FileOperationResult outcome =
        permanentPurge ? m_fileManager->removeItem(path) : m_fileManager->trashItem(path);
    if (!outcome.succeeded)
        return makeRecord(path, metrics, TrashItemStatus::failed, std::nullopt, outcome.errorDescription);
    return makeRecord(path, metrics, TrashItemStatus::success, permanentPurge ? std::nullopt : outcome.resultingPath);
}

MeasuredMetrics TrashPipeline::computeItemMetrics(const QString& path) const
{
    bool isDirectory = false;
    if (!m_fileManager->fileExists(path, &isDirectory))
        return {};
    if (!isDirectory)
        return getFileSize(path);
    CountingSink sink(path);
    m_fileManager->walk(path, sink);
    if (sink.rootUnreadable && sink.fileCount == 0)
        return getFileSize(path);
    return {.allocatedBytes = sink.allocatedBytes,
            .logicalBytes = sink.logicalBytes,
            .fileCount = std::max<std::int64_t>(sink.fileCount, 1)};
}

MeasuredMetrics TrashPipeline::getFileSize(const QString& path) const
{
    // What the path leads to, as the existence test saw it. A folder has no size of its own.
    const std::optional<FileStatus> status = m_fileManager->status(path, true);
    if (!status || status->isDirectory())
        return {.fileCount = 1};
    return {.allocatedBytes = status->allocatedSize, .logicalBytes = status->size, .fileCount = 1};
}

} // namespace kestrow
