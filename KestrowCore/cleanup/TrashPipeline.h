#pragma once

#include "cleanup/AuditLogger.h"
#include "cleanup/TrashItemRecord.h"
#include "cleanup/TrashPipelineError.h"
#include "cleanup/TrashSummary.h"
#include "platform/FileManager.h"
#include "platform/TrashEntry.h"
#include "storage/MeasuredMetrics.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <memory>

namespace kestrow {

// The only road by which anything leaves its place. Each path is checked by the sandbox,
// measured, and then moved to the Trash (or, on an explicit and confirmed purge, deleted),
// one after another; every path gets a record whatever happens, and every run leaves one
// line in the audit log when the pipeline has a logger. Nothing falls back from the Trash to
// deletion. Immutable; a run cannot be paused or cancelled once begun.
class TrashPipeline {
public:
    struct Options {
        std::shared_ptr<const FileManager> fileManager;
        std::shared_ptr<AuditLogger> auditLogger; // absent: the run leaves no trace in the log
        QString homeURL;                          // the home the sandbox guards; empty: the user's
        // Told when the log could not take a run's line; the run's result stands all the same.
        std::function<void(const AuditLoggerError&)> onAuditFailure;
    };

    explicit TrashPipeline(Options options = {});

    // Moves every path to the Trash, or with `dryRun` only checks and measures it. Throws
    // TrashPipelineError::emptyTargetList, before anything is touched or logged.
    TrashSummary trash(const QStringList& urls, bool dryRun, const QString& client) const;
    // Deletes every path for good. Throws unconfirmedPermanentPurge unless `confirmed`, then
    // emptyTargetList. There is no dry form.
    TrashSummary purgePermanently(const QStringList& urls, bool confirmed, const QString& client) const;
    // Empties the given entries out of the Trash for good, each with its record, as a purge:
    // the item is reached through its open Trash folder (the sandbox, which guards the Trash
    // itself, has no say here), must still be the entry that was listed, and is removed
    // without crossing a mount. Records name the items by their place in the Trash. Throws as
    // purgePermanently does.
    TrashSummary purgeTrashEntries(const std::vector<TrashEntry>& entries, bool confirmed, const QString& client) const;

    // One path from sandbox check to outcome. Never throws.
    [[nodiscard]] TrashItemRecord processItem(const QString& path, bool dryRun, bool permanentPurge) const;
    // Allocated and logical bytes and regular files of a path, links not followed, neither below
    // it nor the path itself: a link measures as the link, which is what would move.
    // Unlike a scan's measure, a file linked twice in a folder counts twice. An absent path
    // measures 0 files, an empty folder 1.
    [[nodiscard]] MeasuredMetrics computeItemMetrics(const QString& path) const;

    // The absolute path of the object an operation on `path` acts on: the folders above it
    // with their links followed, the item itself not. The path a Trash record keeps.
    [[nodiscard]] static QString pathActedOn(const QString& path, const SystemCalls& systemCalls);

private:
    [[nodiscard]] QString pathActedOn(const QString& path) const;
    [[nodiscard]] TrashItemRecord processTrashEntry(const TrashEntry& entry) const;
    // Processes `count` items in order, times the run and records its line of `type`.
    TrashSummary run(qsizetype count, const std::function<TrashItemRecord(qsizetype)>& process, AuditOperationType type,
                     const QString& client) const;

    std::shared_ptr<const FileManager> m_fileManager;
    std::shared_ptr<AuditLogger> m_auditLogger;
    QString m_homeURL;
    std::function<void(const AuditLoggerError&)> m_onAuditFailure;
};

} // namespace kestrow
