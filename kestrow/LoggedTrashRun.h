#pragma once

#include "cleanup/AuditLogger.h"
#include "cleanup/TrashPipeline.h"

#include <QString>

#include <memory>
#include <optional>

namespace kestrow::cli {

// A cleaning run of a command, recorded in the audit log of its home. The log is asked first
// whether it can take a line, so that a run that could not be recorded is refused before
// anything moves; a line that the log still fails to take after the run fails the command.
class LoggedTrashRun {
public:
    // `logFileManager` is how the log is reached; absent: the real disk.
    explicit LoggedTrashRun(const QString& home, std::shared_ptr<const FileManager> logFileManager = {});
    LoggedTrashRun(const LoggedTrashRun&) = delete;
    LoggedTrashRun& operator=(const LoggedTrashRun&) = delete;

    // True when the log can take a line; otherwise says on standard error what is wrong with
    // it and what to do.
    [[nodiscard]] bool logCanTakeALine() const;

    // The pipeline, sandboxed by the home and recording in its log.
    [[nodiscard]] const TrashPipeline& pipeline() const { return m_pipeline; }

    // Prints the run as reportTrashRun does and, when the log could not take the run's line,
    // says so on standard error. Exit status 1 when an item or the line failed.
    [[nodiscard]] int report(const TrashSummary& summary, bool json) const;

private:
    std::shared_ptr<AuditLogger> m_log;
    mutable std::optional<AuditLoggerError> m_failure; // of the run's line, set by the pipeline
    TrashPipeline m_pipeline;
};

} // namespace kestrow::cli
