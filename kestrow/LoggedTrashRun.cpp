#include "LoggedTrashRun.h"

#include "CommandLine.h"
#include "TrashNote.h"
#include "TrashRunOutput.h"

#include "platform/NativePath.h"

namespace kestrow::cli {

namespace {

// The error's text, to be followed by more sentences.
QString sentence(const AuditLoggerError& error)
{
    QString text = error.description();
    if (text.endsWith(QLatin1Char('.')))
        text.chop(1);
    return text;
}

// What to do about a log that cannot take a line.
QString remedy(AuditLoggerError::Case kind)
{
    switch (kind) {
    case AuditLoggerError::Case::decodingFailed:
        return QStringLiteral("Run `kestrow audit verify` to see the broken line, or move the file away to start a "
                              "new log.");
    case AuditLoggerError::Case::readFailed:
        return QStringLiteral("Run `kestrow audit verify` to see what is wrong with it, or move the file away to "
                              "start a new log.");
    case AuditLoggerError::Case::writeFailed:
    case AuditLoggerError::Case::directoryCreationFailed:
        break;
    }
    return QStringLiteral("The log must be a regular file in a folder that can be written to; move away what is in "
                          "its place to start a new log.");
}

} // namespace

LoggedTrashRun::LoggedTrashRun(const QString& home, std::shared_ptr<const FileManager> logFileManager)
    : m_home(home)
    , m_log(std::make_shared<AuditLogger>(
          AuditLogger::Options{.homeURL = home, .fileManager = std::move(logFileManager)}))
    , m_pipeline({.auditLogger = m_log, .homeURL = home, .onAuditFailure = auditFailureHandler()})
{
}

bool LoggedTrashRun::logCanTakeALine(const QString& nothingDone) const
{
    try {
        m_log->checkWritable();
        return true;
    } catch (const AuditLoggerError& error) {
        printError(
            QStringLiteral("kestrow: the audit log %1 cannot take a line: %2. %3 %4")
                .arg(NativePath::displayText(m_log->logFileURL()), sentence(error), nothingDone, remedy(error.kind())));
        return false;
    }
}

std::function<void(const AuditLoggerError&)> LoggedTrashRun::auditFailureHandler() const
{
    return [this](const AuditLoggerError& error) { m_failure = error; };
}

int LoggedTrashRun::report(const TrashSummary& summary, bool json) const
{
    const int status = reportTrashRun(summary, json);
    if (!json && !summary.isDryRun() && !summary.isPermanentPurge() && summary.successCount() > 0 && !m_failure)
        printTrashNote(m_home);
    return finish(status);
}

int LoggedTrashRun::finish(int status) const
{
    if (!m_failure)
        return status;
    printError(QStringLiteral("kestrow: this run could not be recorded in the audit log %1: %2. What the run did "
                              "stands; run `kestrow audit verify` to check the log.")
                   .arg(NativePath::displayText(m_log->logFileURL()), sentence(*m_failure)));
    return exitFailure;
}

} // namespace kestrow::cli
