#include "cleanup/TrashPipeline.h"

#include "cleanup/AnchoredItemMeasurer.h"
#include "platform/TrashFolder.h"

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
    return run(
        urls.size(), [&](qsizetype i) { return processItem(urls[i], dryRun, false); },
        dryRun ? AuditOperationType::dryRun : AuditOperationType::trash, client);
}

TrashSummary TrashPipeline::purgePermanently(const QStringList& urls, bool confirmed, const QString& client) const
{
    if (!confirmed)
        throw TrashPipelineError::unconfirmedPermanentPurge();
    if (urls.isEmpty())
        throw TrashPipelineError::emptyTargetList();
    return run(
        urls.size(), [&](qsizetype i) { return processItem(urls[i], false, true); }, AuditOperationType::purge, client);
}

TrashSummary TrashPipeline::purgeTrashEntries(const std::vector<TrashEntry>& entries, bool confirmed,
                                              const QString& client) const
{
    if (!confirmed)
        throw TrashPipelineError::unconfirmedPermanentPurge();
    if (entries.empty())
        throw TrashPipelineError::emptyTargetList();
    return run(
        static_cast<qsizetype>(entries.size()), [&](qsizetype i) { return processTrashEntry(entries[i]); },
        AuditOperationType::purge, client);
}

TrashSummary TrashPipeline::run(qsizetype count, const std::function<TrashItemRecord(qsizetype)>& process,
                                AuditOperationType type, const QString& client) const
{
    const bool dryRun = type == AuditOperationType::dryRun;
    const bool permanentPurge = type == AuditOperationType::purge;
    const QDateTime startedAt = QDateTime::currentDateTimeUtc();
    const QUuid operationId = QUuid::createUuid();
    std::vector<TrashItemRecord> records;
    records.reserve(static_cast<size_t>(count));
    for (qsizetype i = 0; i < count; ++i)
        records.push_back(process(i));
    TrashSummary summary(operationId, dryRun, permanentPurge, std::move(records), startedAt,
                         QDateTime::currentDateTimeUtc());

    if (m_auditLogger) {
        QStringList freedPaths;
        for (const TrashItemRecord& record : summary.records()) {
            if (record.status.countsAsFreed())
                freedPaths.append(record.sourcePath);
        }
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
        return TrashItemRecord::measured(path, {.fileCount = 1}, TrashItemStatus::failed, std::nullopt,
                                         QStringLiteral("Sandbox violation: ") + error.description());
    }
    if (!m_fileManager->fileExists(path)) {
        return TrashItemRecord::measured(path, {.fileCount = 1}, TrashItemStatus::failed, std::nullopt,
                                         QStringLiteral("File does not exist: ") + path);
    }

    // From here on the item is reached through its parent's descriptor: whatever is done to
    // the path text meanwhile, the object measured and moved is the one opened here.
    const QString actingPath = pathActedOn(path);
    if (actingPath != PathText::standardizedLocation(path)) {
        try {
            SandboxValidator::validate(actingPath, m_homeURL, m_fileManager->systemCalls());
        } catch (const SandboxSecurityError& error) {
            return TrashItemRecord::measured(path, {.fileCount = 1}, TrashItemStatus::failed, std::nullopt,
                                             QStringLiteral("Sandbox violation: ") + error.description());
        }
    }
    AnchorOutcome anchored = m_fileManager->anchor(actingPath);
    if (!anchored.item) {
        if (anchored.errorCode == ENOENT)
            return TrashItemRecord::measured(path, {.fileCount = 1}, TrashItemStatus::failed, std::nullopt,
                                             QStringLiteral("File does not exist: ") + path);
        return TrashItemRecord::measured(path, {.fileCount = 1}, TrashItemStatus::failed, std::nullopt,
                                         QStringLiteral("Could not open the folder holding \u201c%1\u201d: %2")
                                             .arg(path, SystemMessage::of(anchored.errorCode)));
    }
    const AnchoredItem& item = *anchored.item;

    // Measured first: once moved, nothing is left here to measure.
    const AnchoredItemMeasure measure = AnchoredItemMeasurer::measure(*m_fileManager, item);
    if (!measure.mountPoints.isEmpty()) {
        return TrashItemRecord::measured(
            path, measure.metrics, TrashItemStatus::failed, std::nullopt,
            QStringLiteral("\u201c%1\u201d holds a mount point at \u201c%2\u201d; nothing was moved.")
                .arg(path, measure.mountPoints.first()));
    }
    if (dryRun)
        return TrashItemRecord::measured(path, measure.metrics, TrashItemStatus::simulated);
    const FileOperationResult outcome =
        permanentPurge ? m_fileManager->removeItem(item) : m_fileManager->trashItem(item);
    if (!outcome.succeeded)
        return TrashItemRecord::measured(path, measure.metrics, TrashItemStatus::failed, std::nullopt,
                                         outcome.errorDescription);
    return TrashItemRecord::measured(path, measure.metrics, TrashItemStatus::success,
                                     permanentPurge ? std::nullopt : outcome.resultingPath);
}

TrashItemRecord TrashPipeline::processTrashEntry(const TrashEntry& entry) const
{
    const QString path = entry.filePath();
    const std::optional<TrashFolder> trash = TrashFolder::open(*m_fileManager, entry.folder);
    const AnchorOutcome anchored = trash ? trash->anchor(entry) : AnchorOutcome{std::nullopt, ENOENT};
    if (!anchored.item)
        return TrashItemRecord::measured(
            path, {.fileCount = 1}, TrashItemStatus::failed, std::nullopt,
            anchored.errorCode == ESTALE
                ? QStringLiteral("\u201c%1\u201d changed after it was listed; nothing was removed.").arg(path)
                : QStringLiteral("\u201c%1\u201d is no longer in the Trash: %2")
                      .arg(path, SystemMessage::of(anchored.errorCode)));
    const AnchoredItemMeasure measure = AnchoredItemMeasurer::measure(*m_fileManager, *anchored.item);
    if (!measure.mountPoints.isEmpty())
        return TrashItemRecord::measured(
            path, measure.metrics, TrashItemStatus::failed, std::nullopt,
            QStringLiteral("\u201c%1\u201d holds a mount point at \u201c%2\u201d; nothing was removed.")
                .arg(path, measure.mountPoints.first()));
    const FileOperationResult outcome = trash->erase(*anchored.item, entry);
    if (!outcome.succeeded)
        return TrashItemRecord::measured(path, measure.metrics, TrashItemStatus::failed, std::nullopt,
                                         outcome.errorDescription);
    return TrashItemRecord::measured(
        path, measure.metrics, TrashItemStatus::success, std::nullopt,
        outcome.errorDescription.isEmpty() ? std::nullopt : std::optional<QString>(outcome.errorDescription));
}

QString TrashPipeline::pathActedOn(const QString& path) const
{
    return pathActedOn(path, m_fileManager->systemCalls());
}

QString TrashPipeline::pathActedOn(const QString& path, const SystemCalls& systemCalls)
{
    // The folders above the item resolved, the item itself not: "link/" and "link" both name
    // the link. Where a folder on the way cannot be examined the text stays as it is, and
    // anchoring, which follows no link, fails on it.
    const QString location = PathText::standardizedLocation(path);
    const QString folder =
        PathText::removingDotComponents(LinkResolver(systemCalls).resolvingSymbolicLinks(PathText::parent(location)));
    return PathText::appending(folder, PathText::lastComponent(location));
}

MeasuredMetrics TrashPipeline::computeItemMetrics(const QString& path) const
{
    if (!m_fileManager->fileExists(path))
        return {};
    const AnchorOutcome anchored = m_fileManager->anchor(pathActedOn(path));
    if (!anchored.item)
        return {.fileCount = 1};
    return AnchoredItemMeasurer::measure(*m_fileManager, *anchored.item).metrics;
}

} // namespace kestrow
