#include "AppsLeftoversCommand.h"

#include "LoggedTrashRun.h"
#include "ProgressLine.h"
#include "TrashRunOutput.h"

#include "apps/AppUninstaller.h"
#include "apps/LeftoversHunter.h"
#include "support/ByteCountFormatter.h"
#include "support/JsonWriter.h"

#include <memory>

namespace kestrow::cli {

namespace {

struct LeftoversOptions {
    AppsLocationOptions location;
    bool clean = false;
    bool dryRun = false;
    bool yes = false;
    bool json = false;
};

// Under a heading per place, in the order the places were searched.
QString leftoversText(const std::vector<AppLeftover>& leftovers)
{
    if (leftovers.empty())
        return QString::fromStdString(
            perPlatform("No leftovers: every item in ~/Library belongs to an installed application.\n",
                        "No leftovers: every item in the XDG folders belongs to an installed program.\n"));
    QString out;
    std::optional<DependencyLocation> heading;
    std::int64_t total = 0;
    for (const AppLeftover& leftover : leftovers) {
        if (heading != leftover.location) {
            heading = leftover.location;
            out += (out.isEmpty() ? QString() : QStringLiteral("\n")) + leftover.location.displayName() +
                   QStringLiteral(":\n");
        }
        out += QStringLiteral("  %1  %2  %3  %4\n    %5\n")
                   .arg(QString::number(leftover.confidence, 'f', 2), leftover.suggestedRiskTier.displayName(),
                        ByteCountFormatter::format(leftover.allocatedSizeBytes), leftover.path, leftover.orphanReason);
        total += leftover.allocatedSizeBytes;
    }
    out += QStringLiteral("\n%1 %2, %3.\n")
               .arg(leftovers.size())
               .arg(leftovers.size() == 1 ? QStringLiteral("leftover") : QStringLiteral("leftovers"),
                    ByteCountFormatter::format(total));
    return out;
}

std::vector<AppLeftover> hunt(const LeftoversOptions& options, const QString& home)
{
    const std::vector<InstalledApp> apps = scanApps(options.location, false);
    ProgressLine progress;
    return LeftoversHunter({.homeURL = home, .softwareRoot = softwareRoot(options.location)})
        .scanForLeftovers(apps, [&progress](const QString& label, double) { progress.update(label); });
}

int runClean(const LeftoversOptions& options, const QString& home)
{
    if (!options.yes && !options.dryRun && !standardInputIsTerminal())
        throw UsageError("leftovers --clean moves the safe leftovers to the Trash and needs a confirmation: pass "
                         "--yes to go ahead, or --dry-run to see what would go.");
    const LoggedTrashRun run(home);
    if (!run.logCanTakeALine())
        return exitFailure;
    std::vector<AppLeftover> safe = hunt(options, home);
    std::erase_if(safe,
                  [](const AppLeftover& leftover) { return leftover.suggestedRiskTier != RiskTier::safeToDelete; });
    if (safe.empty()) {
        printOut(QStringLiteral("Nothing to clean: no leftover is safe to clean.\n"));
        return exitSuccess;
    }
    if (!options.yes && !options.dryRun) {
        printError(leftoversText(safe));
        if (!askYesNo(QStringLiteral("Move these %1 to the Trash? [y/N] ").arg(countedItems(safe.size())))) {
            printError(QStringLiteral("Cleaning cancelled. Nothing was moved."));
            return exitFailure;
        }
    }
    QStringList paths;
    for (const AppLeftover& leftover : safe)
        paths.append(leftover.path);
    return run.report(run.pipeline().trash(paths, options.dryRun, AppUninstaller::client), options.json);
}

int runLeftovers(const LeftoversOptions& options)
{
    if (!options.clean && (options.dryRun || options.yes))
        throw UsageError("--dry-run and --yes go with --clean.");
    const QString home = resolveHome(options.location.home);
    if (options.clean)
        return runClean(options, home);
    const std::vector<AppLeftover> leftovers = hunt(options, home);
    if (options.json) {
        JsonValue::Array array;
        for (const AppLeftover& leftover : leftovers)
            array.push_back(leftover.toJson(DateEncoding::iso8601));
        printOut(JsonWriter::write(JsonValue(std::move(array)), {.pretty = true}) + '\n');
    } else {
        printOut(leftoversText(leftovers));
    }
    return exitSuccess;
}

} // namespace

void setupAppsLeftoversCommand(CommandLine& commandLine, CLI::App& apps)
{
    auto options = std::make_shared<LeftoversOptions>();
    CLI::App* command = apps.add_subcommand(
        "leftovers",
        perPlatform("List what uninstalled applications left in ~/Library, by place, with how sure the finding is, "
                    "its tier and the reason; with --clean, move those that are safe to clean to the Trash",
                    "List what uninstalled programs left in ~/.config, ~/.local/share, ~/.cache, ~/.local/state, "
                    "~/.var/app and ~/.config/autostart, by place, with how sure the finding is, its tier and the "
                    "reason; with --clean, move those that are safe to clean to the Trash"));
    command->add_flag("--clean", options->clean, "Move the leftovers that are safe to clean to the Trash");
    command->add_flag("--dry-run", options->dryRun, "With --clean: check and measure only; nothing is moved");
    command->add_flag("--yes", options->yes, "With --clean: do not ask for confirmation");
    addJsonFlag(command, options->json);
    addAppsLocationOptions(command, options->location);
    commandLine.onRun(command, [options] { return runLeftovers(*options); });
}

} // namespace kestrow::cli
