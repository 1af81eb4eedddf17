#include "AuditCommand.h"

#include "TrashRunOutput.h"

#include "cleanup/AuditLogger.h"
#include "support/ByteCountFormatter.h"
#include "support/JsonWriter.h"

namespace kestrow::cli {

namespace {

struct AuditOptions {
    std::string home;
    bool json = false;
};

// The log's own failure, with where it is and what to do about it; exit status 1.
int unreadableLog(const AuditLoggerError& error, const QString& logFile)
{
    const QString advice = error.kind() == AuditLoggerError::Case::decodingFailed
                               ? QStringLiteral("restore that line, or move the file away to start a new log")
                               : QStringLiteral("check that it is a regular file that can be read, or move it "
                                                "away to start a new log");
    printError(QStringLiteral("kestrow: %1 (%2): %3.").arg(error.description(), logFile, advice));
    return exitFailure;
}

QString entryText(const AuditLogEntry& entry)
{
    QString out =
        QStringLiteral("%1  %2 %3 %4  %5  %6\n")
            .arg(entry.timestamp, entry.operationType.text().leftJustified(7, QLatin1Char(' ')),
                 countedItems(entry.itemsCount).rightJustified(11),
                 ByteCountFormatter::format(entry.bytesFreed).rightJustified(10), entry.client, entry.operationId);
    for (const QString& path : entry.paths)
        out += QStringLiteral("    ") + path + QLatin1Char('\n');
    return out;
}

int runLog(const AuditOptions& options)
{
    AuditLogger logger({.homeURL = resolveHome(options.home)});
    std::vector<AuditLogEntry> entries;
    try {
        entries = logger.readEntries();
    } catch (const AuditLoggerError& error) {
        return unreadableLog(error, logger.logFileURL());
    }
    if (options.json) {
        JsonValue::Array array;
        for (const AuditLogEntry& entry : entries)
            array.push_back(entry.toJson());
        printOut(JsonWriter::prettySorted(array) + '\n');
    } else if (entries.empty()) {
        printOut(QStringLiteral("Nothing recorded yet in %1.\n").arg(logger.logFileURL()));
    } else {
        for (const AuditLogEntry& entry : entries)
            printOut(entryText(entry));
    }
    return exitSuccess;
}

int runVerify(const AuditOptions& options)
{
    AuditLogger logger({.homeURL = resolveHome(options.home)});
    AuditVerificationResult result;
    try {
        result = logger.verifyIntegrity();
    } catch (const AuditLoggerError& error) {
        return unreadableLog(error, logger.logFileURL());
    }
    if (options.json)
        printOut(JsonWriter::write(result.toJson(), {.pretty = true}) + '\n');
    else if (result.isValid)
        printOut(QStringLiteral("Audit log intact: %1 entries, every hash in the chain checks out (%2).\n")
                     .arg(QString::number(result.totalEntries), logger.logFileURL()));
    else
        printOut(QStringLiteral("Audit log BROKEN: %1 (%2 entries in %3).\n")
                     .arg(*result.failureReason, QString::number(result.totalEntries), logger.logFileURL()));
    return result.isValid ? exitSuccess : exitFailure;
}

CLI::App* addAuditSubcommand(CommandLine& commandLine, CLI::App* audit, const char* name, const char* help,
                             int (*run)(const AuditOptions&))
{
    auto options = std::make_shared<AuditOptions>();
    CLI::App* command = audit->add_subcommand(name, help);
    addHomeOption(command, options->home);
    addJsonFlag(command, options->json);
    commandLine.onRun(command, [options, run] { return run(*options); });
    return command;
}

} // namespace

void setupAuditCommand(CommandLine& commandLine)
{
    CLI::App* audit = commandLine.app().add_subcommand(
        "audit", "Read and check the audit log (~/.kestrow/audit.jsonl), where every clean and sweep leaves a "
                 "hash-chained line.");
    audit->require_subcommand(1);
    addAuditSubcommand(commandLine, audit, "log", "List every recorded run, oldest first", runLog);
    addAuditSubcommand(commandLine, audit, "verify",
                       "Check the hash chain; exit status 1 and the first broken line when it does not hold",
                       runVerify);
}

} // namespace kestrow::cli
