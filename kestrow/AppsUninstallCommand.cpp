#include "AppsUninstallCommand.h"

#include "AppLookup.h"
#include "AppsFootprintCommand.h"
#include "LoggedTrashRun.h"
#include "TrashNote.h"

#include "apps/AppUninstaller.h"
#include "apps/AppUninstallerError.h"
#include "support/ByteCountFormatter.h"
#include "support/JsonWriter.h"

#include <memory>
#include <optional>

namespace kestrow::cli {

namespace {

struct UninstallCommandOptions {
    AppsLocationOptions location;
    std::string nameOrId;
    bool dryRun = false;
    bool force = false;
    bool keepApp = false;
    bool keepData = false;
    bool yes = false;
    bool json = false;
};

QString summaryText(const UninstallSummary& summary)
{
    QString out;
    for (const TrashItemRecord& record : summary.records) {
        if (record.status == TrashItemStatus::failed)
            out += QStringLiteral("Failed: ") + record.sourcePath + QStringLiteral("\n  ") +
                   record.errorMessage.value_or(QString()) + QLatin1Char('\n');
        else
            out += (summary.dryRun ? QStringLiteral("Would remove: ") : QStringLiteral("Removed: ")) +
                   record.sourcePath + QLatin1Char('\n');
    }
    out += (summary.dryRun ? QStringLiteral("\n%1 would be freed.\n") : QStringLiteral("\n%1 freed.\n"))
               .arg(ByteCountFormatter::format(summary.freedAllocatedBytes));
    return out;
}

int runUninstall(const UninstallCommandOptions& options)
{
    const bool mayAsk = standardInputIsTerminal();
    if (!options.yes && !options.dryRun && !mayAsk)
        throw UsageError("uninstall moves the application and its data to the Trash and needs a confirmation: pass "
                         "--yes to go ahead, or --dry-run to see what would go.");
    const QString home = resolveHome(options.location.home);
    const LoggedTrashRun run(home);
    if (!run.logCanTakeALine())
        return exitFailure;

    // The system's applications are found too, to be refused with the reason that protects them.
    const AppLookup lookup(scanApps(options.location, true));
    const InstalledApp& app = lookup.find(pathArgument(options.nameOrId));
    // The run's pipeline records in the home's log; it lives as long as this call.
    const std::shared_ptr<const TrashPipeline> pipeline(std::shared_ptr<void>(), &run.pipeline());
    const AppUninstaller uninstaller({.trashPipeline = pipeline, .homeURL = home});
    if (!options.yes && !options.dryRun) {
        const AppFootprint footprint = DependencyResolver({.homeURL = home}).resolveDependencies(app);
        printError(footprintText(footprint));
        if (!askYesNo(QStringLiteral("Move %1 to the Trash? [y/N] ").arg(app.displayName))) {
            printError(QStringLiteral("Uninstall cancelled. Nothing was moved."));
            return exitFailure;
        }
    }
    std::optional<UninstallSummary> outcome;
    try {
        outcome = uninstaller.uninstall(
            app, options.dryRun,
            {.force = options.force, .includeBundle = !options.keepApp, .includeDependencies = !options.keepData});
    } catch (const AppUninstallerError& error) {
        // What protects the application says what to do instead (a package manager, Flatpak, Snap).
        if (error.kind() != AppUninstallerError::Case::systemAppProtected || !app.protectionReason)
            throw;
        printError(QStringLiteral("kestrow: ") + error.description() + QLatin1Char(' ') + *app.protectionReason +
                   QLatin1Char('.'));
        return exitFailure;
    }
    const UninstallSummary& summary = *outcome;
    if (options.json)
        printOut(JsonWriter::write(summary.toJson(DateEncoding::iso8601), {.pretty = true}) + '\n');
    else
        printOut(summaryText(summary));
    const bool anyFailed =
        std::any_of(summary.records.begin(), summary.records.end(),
                    [](const TrashItemRecord& record) { return record.status == TrashItemStatus::failed; });
    const bool anyMoved =
        std::any_of(summary.records.begin(), summary.records.end(),
                    [](const TrashItemRecord& record) { return record.status == TrashItemStatus::success; });
    if (!options.json && !summary.dryRun && anyMoved)
        printTrashNote(home);
    return anyFailed ? exitFailure : exitSuccess;
}

} // namespace

void setupAppsUninstallCommand(CommandLine& commandLine, CLI::App& apps)
{
    auto options = std::make_shared<UninstallCommandOptions>();
    CLI::App* command = apps.add_subcommand(
        "uninstall", "Move one application and everything its footprint holds to the Trash, in one run recorded "
                     "in the audit log. Protected applications are always refused; a running one only with "
                     "--force. Exit status 1 when it was refused or any item failed.");
    command
        ->add_option("NAME-OR-ID", options->nameOrId,
                     "The application's bundle identifier (exactly, else ignoring case) or its name (ignoring case)")
        ->required();
    command->add_flag("--dry-run", options->dryRun, "Check and measure only; nothing is moved");
    command->add_flag("--force", options->force, "Stop the application if it runs, and go on");
    command->add_flag("--keep-app", options->keepApp,
                      perPlatform("Leave the application bundle in place",
                                  "Leave the program (the AppImage or the entry, and its icons) in place"));
    command->add_flag("--keep-data", options->keepData,
                      perPlatform("Leave the application's data in ~/Library in place",
                                  "Leave the application's data in the XDG folders in place"));
    command->add_flag("--yes", options->yes, "Do not ask for confirmation");
    addJsonFlag(command, options->json);
    addAppsLocationOptions(command, options->location);
    commandLine.onRun(command, [options] { return runUninstall(*options); });
}

} // namespace kestrow::cli
