#include "SweepCommand.h"

#include "LoggedTrashRun.h"
#include "ProgressLine.h"
#include "TrashRunOutput.h"
#include "UserRules.h"

#include "scan/DeepScanEngine.h"
#include "support/ByteCountFormatter.h"

#include <QDateTime>
#include <QUuid>

#include <algorithm>
#include <map>
#include <string>

namespace kestrow::cli {

namespace {

struct SweepOptions {
    bool dryRun = false;
    bool yes = false;
    std::string home;
    bool json = false;
};

std::vector<DiscoveredItem> safeItems(const QString& home)
{
    DeepScanEngine engine({.homeURL = home, .ruleRegistry = loadUserRules(home)});
    ProgressLine progressLine;
    std::int64_t found = 0;
    const ScanResult result = engine.scan(std::nullopt, [&](const ScanProgress& progress) {
        found += progress.itemsFound;
        progressLine.update(QStringLiteral("Scanning: %1  %2").arg(countedItems(found), progress.currentPath));
    });
    progressLine.clear();
    std::vector<DiscoveredItem> items;
    std::copy_if(result.items.begin(), result.items.end(), std::back_inserter(items),
                 [](const DiscoveredItem& item) { return item.riskTier == RiskTier::safeToDelete; });
    return items;
}

std::int64_t totalBytes(const std::vector<DiscoveredItem>& items)
{
    std::int64_t total = 0;
    for (const DiscoveredItem& item : items)
        total += item.allocatedSizeBytes;
    return total;
}

// What would go, by category, largest first; then the question. True when the answer is yes.
bool confirmed(const std::vector<DiscoveredItem>& items)
{
    std::map<StorageCategory, std::int64_t> byCategory;
    for (const DiscoveredItem& item : items)
        byCategory[item.category] += item.allocatedSizeBytes;
    std::vector<std::pair<StorageCategory, std::int64_t>> groups(byCategory.begin(), byCategory.end());
    std::stable_sort(groups.begin(), groups.end(), [](const auto& a, const auto& b) { return a.second > b.second; });
    QString text = QStringLiteral("Safe to clean, by category:\n");
    for (const auto& [category, bytes] : groups)
        text += QStringLiteral("  ") + category.displayName() + QStringLiteral(": ") +
                ByteCountFormatter::format(bytes) + QLatin1Char('\n');
    text +=
        QStringLiteral("\nMove %1 (%2) to the Trash? [y/N] ")
            .arg(countedItems(static_cast<std::int64_t>(items.size())), ByteCountFormatter::format(totalBytes(items)));
    return askYesNo(text);
}

int runSweep(const SweepOptions& options)
{
    const QString home = resolveHome(options.home);
    const bool mayAsk = standardInputIsTerminal();
    if (!options.yes && !options.dryRun && !mayAsk)
        throw UsageError("sweep moves every safe item to the Trash and needs a confirmation: pass --yes to go "
                         "ahead, or --dry-run to see what would go.");

    // Before the scan, so that a log that cannot record the run costs no time; a dry run
    // records its line too.
    const LoggedTrashRun run(home);
    if (!run.logCanTakeALine())
        return exitFailure;

    const std::vector<DiscoveredItem> items = safeItems(home);
    if (items.empty()) {
        if (!options.json) {
            printOut(QStringLiteral("Nothing to sweep: the scan found nothing that is safe to clean.\n"));
            return exitSuccess;
        }
        // Scripts still get the form of a run, with no records; the pipeline never ran.
        const QDateTime now = QDateTime::currentDateTimeUtc();
        return reportTrashRun(TrashSummary(QUuid::createUuid(), options.dryRun, false, {}, now, now), true);
    }
    if (!options.yes && !options.dryRun && !confirmed(items)) {
        printError(QStringLiteral("Sweep cancelled. Nothing was moved."));
        return exitFailure;
    }

    QStringList paths;
    for (const DiscoveredItem& item : items)
        paths.append(item.path);
    return run.report(run.pipeline().trash(paths, options.dryRun, QStringLiteral("cli")), options.json);
}

} // namespace

void setupSweepCommand(CommandLine& commandLine)
{
    auto options = std::make_shared<SweepOptions>();
    CLI::App* command = commandLine.app().add_subcommand(
        "sweep", "Scan afresh and move every item found safe to clean to the Trash, in one recorded run. Asks "
                 "first on a terminal; elsewhere needs --yes (or --dry-run).");
    command->add_flag("--dry-run", options->dryRun, "Show what would go and how much it would free; nothing is moved");
    command->add_flag("--yes", options->yes, "Go ahead without asking");
    addHomeOption(command, options->home);
    addJsonFlag(command, options->json);
    commandLine.onRun(command, [options] { return runSweep(*options); });
}

} // namespace kestrow::cli
