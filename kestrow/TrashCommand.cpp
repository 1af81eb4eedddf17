#include "TrashCommand.h"

#include "LoggedTrashRun.h"
#include "TrashRunOutput.h"

#include "cleanup/TrashLedger.h"
#include "platform/NativePath.h"
#include "support/ByteCountFormatter.h"
#include "support/JsonWriter.h"

#include <QUuid>

namespace kestrow::cli {

namespace {

struct TrashListOptions {
    std::string home;
    bool json = false;
};

int runList(const TrashListOptions& options)
{
    const QString home = resolveHome(options.home);
    const TrashHoldings holdings =
        readTrashHoldings(std::make_shared<AuditLogger>(AuditLogger::Options{.homeURL = home}));
    if (options.json) {
        printOut(JsonWriter::write(holdings.toJson(), {.pretty = true}) + '\n');
        return exitSuccess;
    }
    std::vector<const TrashedRun*> runs;
    for (const TrashedRun& run : holdings.runs)
        runs.push_back(&run);
    printOut(holdingsText(runs, holdings));
    return exitSuccess;
}

QString otherProgramsText(const TrashHoldings& holdings)
{
    if (holdings.foreignCount == 0)
        return QStringLiteral("Nothing else is in the Trash.\n");
    return QStringLiteral("Other programs' items in the Trash: %1 (%2), which Kestrow leaves alone.\n")
        .arg(countedItems(holdings.foreignCount), ByteCountFormatter::format(holdings.foreignBytes));
}

// A message for an exception, its names' bytes kept as the command line prints them back.
std::string message(const QString& text)
{
    return NativePath::encode(text).toStdString();
}

} // namespace

TrashHoldings readTrashHoldings(const std::shared_ptr<AuditLogger>& log)
{
    try {
        return TrashLedger({.auditLogger = log}).read();
    } catch (const AuditLoggerError& error) {
        // Without the log there is no telling Kestrow's items from others'.
        throw std::runtime_error(message(
            QStringLiteral("%1 (%2): Kestrow's items in the Trash are known by it. Run `kestrow audit verify` to see "
                           "what is wrong with it.")
                .arg(error.description(), log->logFileURL())));
    }
}

const TrashedRun& trashedRun(const TrashHoldings& holdings, const std::string& operationId, const QString& logFile)
{
    const QString id = pathArgument(operationId);
    if (QUuid::fromString(id).isNull())
        throw UsageError(operationId + " is not an operation id; `kestrow audit log` shows each run's id.");
    const AuditLogEntry* line = holdings.line(id);
    if (!line)
        throw UsageError(
            message(QStringLiteral("no run %1 in the audit log %2; `kestrow audit log` lists the runs and their ids.")
                        .arg(id, logFile)));
    const QString start = QStringLiteral("run %1 was ").arg(line->operationId);
    switch (line->operationType) {
    case AuditOperationType::trash:
        return *holdings.run(id);
    case AuditOperationType::purge:
        throw UsageError(message(start + QStringLiteral("a purge: what it deleted is gone for good and cannot be "
                                                        "restored.")));
    case AuditOperationType::dryRun:
        throw UsageError(
            message(start + QStringLiteral("a dry run: it moved nothing, so there is nothing to take back.")));
    case AuditOperationType::restore:
        throw UsageError(message(start + QStringLiteral("a restore: what it put back is already in its place.")));
    case AuditOperationType::scan:
        break;
    }
    throw UsageError(message(start + QStringLiteral("a scan: it moved nothing, so there is nothing to take back.")));
}

QString holdingsText(const std::vector<const TrashedRun*>& runs, const TrashHoldings& holdings)
{
    QString out;
    std::int64_t count = 0;
    std::int64_t bytes = 0;
    for (const TrashedRun* run : runs) {
        if (run->items.empty())
            continue;
        out += QStringLiteral("%1  %2 %3 %4  %5\n")
                   .arg(run->line.timestamp, run->line.client.leftJustified(11, QLatin1Char(' ')),
                        countedItems(static_cast<std::int64_t>(run->items.size())).rightJustified(11),
                        ByteCountFormatter::format(run->allocatedBytes).rightJustified(10), run->line.operationId);
        for (const TrashedItem& item : run->items)
            out += QStringLiteral("    ") + item.entry.originalPath + QLatin1Char('\n');
        count += static_cast<std::int64_t>(run->items.size());
        bytes += run->allocatedBytes;
    }
    if (count == 0)
        return QStringLiteral("Nothing that Kestrow moved is in the Trash.\n") + otherProgramsText(holdings);
    return out +
           QStringLiteral("\nKestrow's runs: %1 in the Trash, %2. `kestrow restore ID` puts a run back; "
                          "`kestrow trash empty` deletes for good.\n")
               .arg(countedItems(count), ByteCountFormatter::format(bytes)) +
           otherProgramsText(holdings);
}

CLI::App& setupTrashCommand(CommandLine& commandLine)
{
    CLI::App* trash = commandLine.app().add_subcommand(
        "trash", "See and empty what Kestrow's runs moved to the Trash; other programs' items are never touched.");
    trash->require_subcommand(1);
    auto options = std::make_shared<TrashListOptions>();
    CLI::App* list = trash->add_subcommand(
        "list", "List what Kestrow's runs moved to the Trash and is still there, by run (time, client, items, size, "
                "operation id), with the total; other programs' items are counted apart");
    addHomeOption(list, options->home);
    addJsonFlag(list, options->json);
    commandLine.onRun(list, [options] { return runList(*options); });
    return *trash;
}

} // namespace kestrow::cli
