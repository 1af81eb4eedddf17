#include "RestoreCommand.h"

#include "LoggedTrashRun.h"
#include "TrashCommand.h"
#include "TrashRunOutput.h"

#include "cleanup/TrashPipeline.h"
#include "cleanup/TrashRestorer.h"
#include "platform/PathText.h"
#include "support/ByteCountFormatter.h"
#include "support/JsonWriter.h"

#include <QSet>
#include <QUuid>

namespace kestrow::cli {

namespace {

struct RestoreOptions {
    std::vector<std::string> targets;
    bool dryRun = false;
    std::string home;
    bool json = false;
};

std::vector<TrashRestorer::Item> runItems(const TrashedRun& run)
{
    std::vector<TrashRestorer::Item> items;
    for (const TrashedItem& item : run.items)
        items.push_back({item.entry.originalPath, item.entry});
    for (const QString& path : run.pathsGone)
        items.push_back({path, std::nullopt});
    return items;
}

// For each path, the newest entry that a run of Kestrow's moved to the Trash from there: the
// path as given ("~" against the home, relative to the working folder), or with the folders
// above it resolved.
std::vector<TrashRestorer::Item> pathItems(const TrashHoldings& holdings, const std::vector<std::string>& given,
                                           const QString& home)
{
    std::vector<TrashRestorer::Item> items;
    QSet<QString> taken;
    for (const std::string& text : given) {
        const QString path = absoluteFromWorkingFolder(PathText::expandingTilde(pathArgument(text), home));
        const QSet<QString> names{path, PathText::removingDotComponents(path),
                                  TrashPipeline::pathActedOn(path, *SystemCalls::real())};
        TrashRestorer::Item item{PathText::removingDotComponents(path), std::nullopt};
        for (auto run = holdings.runs.rbegin(); run != holdings.runs.rend() && !item.entry; ++run) {
            for (const TrashedItem& trashed : run->items) {
                if (names.contains(trashed.entry.originalPath) && !taken.contains(trashed.entry.filePath())) {
                    item = {trashed.entry.originalPath, trashed.entry};
                    taken.insert(trashed.entry.filePath());
                    break;
                }
            }
        }
        items.push_back(std::move(item));
    }
    return items;
}

QString restoreText(const RestoreRun& run)
{
    const TrashSummary& summary = run.summary;
    QString out;
    for (std::size_t i = 0; i < summary.records().size(); ++i) {
        const TrashItemRecord& record = summary.records()[i];
        const QString word = record.status == TrashItemStatus::failed ? QStringLiteral("FAILED")
                             : summary.isDryRun()                     ? QStringLiteral("would go")
                                                                      : QStringLiteral("restored");
        out += QStringLiteral("%1 %2  %3\n")
                   .arg(word.leftJustified(9, QLatin1Char(' ')),
                        ByteCountFormatter::format(record.allocatedBytes).rightJustified(10),
                        run.originalPaths[static_cast<qsizetype>(i)]);
        if (record.errorMessage)
            out += QStringLiteral("          ") + *record.errorMessage + QLatin1Char('\n');
    }
    const QString count = countedItems(summary.successCount());
    const QString bytes = ByteCountFormatter::format(summary.totalAllocatedBytesFreed());
    out += summary.isDryRun()
               ? QStringLiteral("\nDry run: %1 (%2) would go back from the Trash. Nothing was moved.").arg(count, bytes)
               : QStringLiteral("\nPut back %1 (%2) from the Trash.").arg(count, bytes);
    if (summary.failureCount() > 0)
        out += QStringLiteral(" %1 failed.").arg(countedItems(summary.failureCount()));
    return out + QLatin1Char('\n');
}

int runRestore(const RestoreOptions& options)
{
    const QString home = resolveHome(options.home);
    const LoggedTrashRun log(home);
    const bool byRun = options.targets.size() == 1 && !QUuid::fromString(pathArgument(options.targets[0])).isNull();
    const TrashHoldings holdings = readTrashHoldings(log.auditLogger());
    const std::vector<TrashRestorer::Item> items =
        byRun ? runItems(trashedRun(holdings, options.targets[0], log.auditLogger()->logFileURL()))
              : pathItems(holdings, options.targets, home);
    if (!options.dryRun && !log.logCanTakeALine(QStringLiteral("Nothing was put back.")))
        return exitFailure;

    const TrashRestorer restorer({.auditLogger = log.auditLogger(), .onAuditFailure = log.auditFailureHandler()});
    const RestoreRun run = restorer.restore(items, options.dryRun, QStringLiteral("cli"));
    if (options.json)
        printOut(JsonWriter::write(run.toJson(DateEncoding::iso8601), {.pretty = true}) + '\n');
    else
        printOut(restoreText(run));
    return log.finish(run.summary.failureCount() > 0 ? exitFailure : exitSuccess);
}

} // namespace

void setupRestoreCommand(CommandLine& commandLine)
{
    auto options = std::make_shared<RestoreOptions>();
    CLI::App* command = commandLine.app().add_subcommand(
        "restore", "Put back from the Trash what a run moved there (its operation id, as `kestrow audit log` shows "
                   "it), or what Kestrow moved there from the given paths. Nothing is ever replaced: an item whose "
                   "place is taken stays in the Trash. Recorded in the audit log; exit status 1 when any item "
                   "could not go back.");
    command->add_option("OPERATION-ID|PATH", options->targets, "A run's operation id, or original paths (one or more)")
        ->required();
    command->add_flag("--dry-run", options->dryRun, "Check and measure only; nothing is moved or recorded");
    addHomeOption(command, options->home);
    addJsonFlag(command, options->json);
    commandLine.onRun(command, [options] { return runRestore(*options); });
}

} // namespace kestrow::cli
