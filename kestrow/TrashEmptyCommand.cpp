#include "TrashEmptyCommand.h"

#include "LoggedTrashRun.h"
#include "TrashCommand.h"
#include "TrashRunOutput.h"

#include "support/ByteCountFormatter.h"

#include <QDateTime>

#include <optional>

namespace kestrow::cli {

namespace {

struct TrashEmptyOptions {
    std::optional<double> olderThanDays;
    std::string run;
    bool yes = false;
    std::string home;
    bool json = false;
};

// The chosen runs with only the items that went to the Trash before `cutoff`, when given.
std::vector<TrashedRun> chosenRuns(const TrashHoldings& holdings, const TrashEmptyOptions& options,
                                   const QString& logFile)
{
    std::vector<TrashedRun> runs;
    if (!options.run.empty())
        runs.push_back(trashedRun(holdings, options.run, logFile));
    else
        runs = holdings.runs;
    if (!options.olderThanDays)
        return runs;
    const QDateTime cutoff =
        QDateTime::currentDateTime().addMSecs(-static_cast<qint64>(*options.olderThanDays * 24 * 3600 * 1000));
    for (TrashedRun& run : runs) {
        std::erase_if(run.items, [&](const TrashedItem& item) {
            return !item.entry.deletedAt || *item.entry.deletedAt >= cutoff;
        });
        run.allocatedBytes = 0;
        for (const TrashedItem& item : run.items)
            run.allocatedBytes += item.metrics.allocatedBytes;
    }
    return runs;
}

int runEmpty(const TrashEmptyOptions& options)
{
    if (options.olderThanDays && !(*options.olderThanDays >= 0))
        throw UsageError("--older-than takes a number of days, 0 or more, e.g. --older-than 30.");
    if (!options.yes && !standardInputIsTerminal())
        throw UsageError("trash empty deletes for good and needs a confirmation: pass --yes to go ahead, or see "
                         "first what it would delete with `kestrow trash list`.");
    const QString home = resolveHome(options.home);
    const LoggedTrashRun log(home);
    const TrashHoldings holdings = readTrashHoldings(log.auditLogger());
    const std::vector<TrashedRun> runs = chosenRuns(holdings, options, log.auditLogger()->logFileURL());

    std::vector<TrashEntry> entries;
    std::int64_t bytes = 0;
    std::vector<const TrashedRun*> shown;
    for (const TrashedRun& run : runs) {
        for (const TrashedItem& item : run.items)
            entries.push_back(item.entry);
        bytes += run.allocatedBytes;
        shown.push_back(&run);
    }
    if (entries.empty()) {
        printOut(QStringLiteral("Nothing to empty: none of what Kestrow moved to the Trash is %1.\n")
                     .arg(options.olderThanDays ? QStringLiteral("that old and still there")
                                                : QStringLiteral("still there")));
        return exitSuccess;
    }
    if (!options.yes) {
        printError(holdingsText(shown, holdings));
        if (!askYesNo(
                QStringLiteral("Delete these %1 (%2) for good? [y/N] ")
                    .arg(countedItems(static_cast<std::int64_t>(entries.size())), ByteCountFormatter::format(bytes)))) {
            printError(QStringLiteral("Emptying cancelled. Nothing was deleted."));
            return exitFailure;
        }
    }
    if (!log.logCanTakeALine(QStringLiteral("Nothing was deleted.")))
        return exitFailure;
    return log.report(log.pipeline().purgeTrashEntries(entries, true, QStringLiteral("cli")), options.json);
}

} // namespace

void setupTrashEmptyCommand(CommandLine& commandLine, CLI::App& trash)
{
    auto options = std::make_shared<TrashEmptyOptions>();
    CLI::App* command = trash.add_subcommand(
        "empty", "Delete for good what Kestrow's runs moved to the Trash (other programs' items are never touched), "
                 "as a purge recorded in the audit log. Asks first on a terminal; elsewhere needs --yes.");
    command
        ->add_option("--older-than", options->olderThanDays, "Only what went to the Trash more than this many days ago")
        ->type_name("DAYS");
    command
        ->add_option("--run", options->run,
                     "Only what this run moved (its operation id, as `kestrow audit log` "
                     "shows it)")
        ->type_name("OPERATION-ID");
    command->add_flag("--yes", options->yes, "Go ahead without asking");
    addHomeOption(command, options->home);
    addJsonFlag(command, options->json);
    commandLine.onRun(command, [options] { return runEmpty(*options); });
}

} // namespace kestrow::cli
