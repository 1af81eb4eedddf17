#include "cleanup/TrashRestorer.h"

#include "cleanup/AnchoredItemMeasurer.h"
#include "cleanup/TrashPipelineError.h"
#include "platform/SystemMessage.h"
#include "platform/TrashEntryError.h"
#include "platform/TrashFolder.h"

#include <QDateTime>
#include <QUuid>

#include <cerrno>

namespace kestrow {

TrashRestorer::TrashRestorer(Options options)
    : m_fileManager(options.fileManager ? std::move(options.fileManager) : std::make_shared<FileManager>())
    , m_auditLogger(std::move(options.auditLogger))
    , m_onAuditFailure(std::move(options.onAuditFailure))
{
}

RestoreRun TrashRestorer::restore(const std::vector<Item>& items, bool dryRun, const QString& client) const
{
    if (items.empty())
        throw TrashPipelineError::emptyTargetList();
    const QDateTime startedAt = QDateTime::currentDateTimeUtc();
    const QUuid operationId = QUuid::createUuid();
    std::vector<TrashItemRecord> records;
    QStringList originals;
    for (const Item& item : items) {
        records.push_back(restoreItem(item, dryRun));
        originals.append(item.originalPath);
    }
    RestoreRun run{
        TrashSummary(operationId, dryRun, false, std::move(records), startedAt, QDateTime::currentDateTimeUtc()),
        originals};
    if (!m_auditLogger || dryRun)
        return run;

    QStringList restoredPaths;
    for (std::size_t i = 0; i < run.summary.records().size(); ++i) {
        if (run.summary.records()[i].status.countsAsFreed())
            restoredPaths.append(originals[static_cast<qsizetype>(i)]);
    }
    try {
        m_auditLogger->record(operationId, AuditOperationType::restore, run.summary.successCount(),
                              run.summary.totalAllocatedBytesFreed(), restoredPaths, client,
                              run.summary.durationSeconds() * 1000.0, QDateTime::currentDateTimeUtc());
    } catch (const AuditLoggerError& error) {
        // What was put back is back whether or not the log could take its line.
        if (m_onAuditFailure)
            m_onAuditFailure(error);
    }
    return run;
}

TrashItemRecord TrashRestorer::restoreItem(const Item& item, bool dryRun) const
{
    const auto failed = [&](const QString& source, const MeasuredMetrics& metrics, const QString& message) {
        return TrashItemRecord::measured(source, metrics, TrashItemStatus::failed, std::nullopt, message);
    };
    if (!item.entry)
        return failed(item.originalPath, {.fileCount = 1},
                      TrashEntryError{TrashEntryError::Case::notInTrash, item.originalPath, {}, {}}.description());
    const TrashEntry& entry = *item.entry;
    const QString trashPath = entry.filePath();
    const std::optional<TrashFolder> trash = TrashFolder::open(*m_fileManager, entry.folder);
    const AnchorOutcome anchored = trash ? trash->anchor(entry) : AnchorOutcome{std::nullopt, ENOENT};
    if (!anchored.item) {
        const TrashEntryError error =
            anchored.errorCode == ESTALE
                ? TrashEntryError{TrashEntryError::Case::changed, item.originalPath, trashPath,
                                  QStringLiteral("another item has taken its name")}
                : TrashEntryError{TrashEntryError::Case::notInTrash, item.originalPath, trashPath, {}};
        return failed(trashPath, {.fileCount = 1}, error.description());
    }

    const AnchoredItemMeasure measure = AnchoredItemMeasurer::measure(*m_fileManager, *anchored.item);
    if (dryRun) {
        // The same verdict the move would give, short of moving: is the place free?
        if (m_fileManager->status(entry.originalPath))
            return failed(
                trashPath, measure.metrics,
                TrashEntryError{TrashEntryError::Case::occupied, item.originalPath, trashPath, {}}.description());
        return TrashItemRecord::measured(trashPath, measure.metrics, TrashItemStatus::simulated);
    }
    const FileOperationResult outcome = trash->putBack(*anchored.item, entry);
    if (!outcome.succeeded)
        return failed(trashPath, measure.metrics, outcome.errorDescription);
    return TrashItemRecord::measured(
        trashPath, measure.metrics, TrashItemStatus::success, std::nullopt,
        outcome.errorDescription.isEmpty() ? std::nullopt : std::optional<QString>(outcome.errorDescription));
}

} // namespace kestrow
