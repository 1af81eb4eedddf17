#include "SweepCommand.h"

#include "LoggedTrashRun.h"
#include "ProgressLine.h"
#include "TrashRunOutput.h"
#include "UserRules.h"

#include "analysis/AnomalyDetector.h"
#include "rules/RuleRegistry.h"
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

// What a fresh scan offers: the safe items to sweep, and the anomalies, which are proposals
// and never swept whatever their tier.
struct Selection {
    std::vector<DiscoveredItem> safe;
    std::vector<DiscoveredItem> proposals;
};

// Found by the anomaly stage: named by a proposed rule that is not in force for its path.
// Once adopted, the rule claims the folder and its items go by the rule's tier.
bool isProposal(const DiscoveredItem& item, const RuleRegistry& registry)
{
    if (!item.ruleId || !item.ruleId->startsWith(AnomalyDetector::ruleIdPrefix))
        return false;
    const std::vector<RuleDefinition> matching = registry.matchingRules(item.path);
    return std::none_of(matching.begin(), matching.end(),
                        [&](const RuleDefinition& rule) { return rule.id == *item.ruleId; });
}

Selection selectItems(const QString& home)
{
    const std::shared_ptr<RuleRegistry> registry = loadUserRules(home);
    DeepScanEngine engine({.homeURL = home, .ruleRegistry = registry});
    ProgressLine progressLine;
    std::int64_t found = 0;
    const ScanResult result = engine.scan(std::nullopt, [&](const ScanProgress& progress) {
        found += progress.itemsFound;
        progressLine.update(QStringLiteral("Scanning: %1  %2").arg(countedItems(found), progress.currentPath));
    });
    progressLine.clear();
    Selection selection;
    for (const DiscoveredItem& item : result.items) {
        if (isProposal(item, *registry))
            selection.proposals.push_back(item);
        else if (item.riskTier == RiskTier::safeToDelete)
            selection.safe.push_back(item);
    }
    return selection;
}

// Anomalies are listed apart, on standard error when standard output carries JSON.
void listProposals(const std::vector<DiscoveredItem>& proposals, bool json)
{
    if (proposals.empty())
        return;
    QString text = QStringLiteral("proposed, not swept: adopt with `kestrow anomalies --adopt PATH`\n");
    for (const DiscoveredItem& item : proposals)
        text += QStringLiteral("  %1  %2\n").arg(item.formattedAllocatedSize().rightJustified(10), item.path);
    if (json) {
        text.chop(1);
        printError(text);
    } else {
        printOut(text + QLatin1Char('\n'));
    }
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

    const Selection selection = selectItems(home);
    listProposals(selection.proposals, options.json);
    const std::vector<DiscoveredItem>& items = selection.safe;
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
