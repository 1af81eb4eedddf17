#pragma once

#include "cleanup/AuditLogger.h"
#include "cleanup/TrashPipeline.h"

#include <QString>

#include <functional>
#include <memory>
#include <optional>

namespace kestrow::cli {

// A run of a command that moves or deletes (a clean, a restore, an emptying of the Trash),
// recorded in the audit log of its home. The log is asked first whether it can take a line,
// so that a run that could not be recorded is refused before anything moves; a line that the
// log still fails to take after the run fails the command.
class LoggedTrashRun {
public:
    // `logFileManager` is how the log is reached; absent: the real disk.
    explicit LoggedTrashRun(const QString& home, std::shared_ptr<const FileManager> logFileManager = {});
    LoggedTrashRun(const LoggedTrashRun&) = delete;
    LoggedTrashRun& operator=(const LoggedTrashRun&) = delete;

    // True when the log can take a line; otherwise says on standard error what is wrong with
    // it, that `nothingDone`, and what to do.
    [[nodiscard]] bool logCanTakeALine(const QString& nothingDone = QStringLiteral("Nothing was cleaned.")) const;

    // The pipeline, sandboxed by the home and recording in its log.
    [[nodiscard]] const TrashPipeline& pipeline() const { return m_pipeline; }
    // The home's log, and what a service writing to it tells of a line it could not write.
    [[nodiscard]] const std::shared_ptr<AuditLogger>& auditLogger() const { return m_log; }
    [[nodiscard]] std::function<void(const AuditLoggerError&)> auditFailureHandler() const;

    // Prints the run as reportTrashRun does, then, after a move to the Trash with people
    // watching, the Trash note (printTrashNote); and finishes as below.
    [[nodiscard]] int report(const TrashSummary& summary, bool json) const;
    // When the log could not take the run's line, says so on standard error and gives exit
    // status 1; otherwise `status`.
    [[nodiscard]] int finish(int status) const;

private:
    QString m_home;
    std::shared_ptr<AuditLogger> m_log;
    mutable std::optional<AuditLoggerError> m_failure; // of the run's line, set by the service that wrote it
    TrashPipeline m_pipeline;
};

} // namespace kestrow::cli
