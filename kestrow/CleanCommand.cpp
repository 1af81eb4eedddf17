#include "CleanCommand.h"

#include "LoggedTrashRun.h"

#include "platform/PathText.h"

namespace kestrow::cli {

namespace {

struct CleanOptions {
    std::vector<std::string> paths;
    bool dryRun = false;
    bool permanent = false;
    bool yes = false;
    std::string home;
    bool json = false;
};

// "~" against the home in use; relative paths against the working folder. Dot components
// stay, so that the sandbox sees what was typed.
QStringList targetPaths(const std::vector<std::string>& given, const QString& home)
{
    QStringList paths;
    for (const std::string& text : given)
        paths.append(absoluteFromWorkingFolder(PathText::expandingTilde(pathArgument(text), home)));
    return paths;
}

int runClean(const CleanOptions& options)
{
    if (options.permanent && options.dryRun)
        throw UsageError("--permanent has no dry run; leave out --permanent to see what would go to the Trash.");
    if (options.permanent && !options.yes)
        throw UsageError("--permanent deletes for good, past the Trash: add --yes to confirm, or leave out "
                         "--permanent to move the items to the Trash.");
    const QString home = resolveHome(options.home);
    const QStringList paths = targetPaths(options.paths, home);

    // A dry run is checked too: it records its line as a real run does.
    const LoggedTrashRun run(home);
    if (!run.logCanTakeALine())
        return exitFailure;
    const TrashPipeline& pipeline = run.pipeline();
    return run.report(options.permanent ? pipeline.purgePermanently(paths, true, QStringLiteral("cli"))
                                        : pipeline.trash(paths, options.dryRun, QStringLiteral("cli")),
                      options.json);
}

} // namespace

void setupCleanCommand(CommandLine& commandLine)
{
    auto options = std::make_shared<CleanOptions>();
    CLI::App* command = commandLine.app().add_subcommand(
        "clean", "Move the given files and folders to the Trash, each checked against the protected places "
                 "first; the run is recorded in the audit log. Exit status 1 when any item failed or the log could not "
                 "record the run.");
    command->add_option("PATH", options->paths, "A file or folder to clean (one or more)")->required();
    command->add_flag("--dry-run", options->dryRun, "Check and measure only; nothing is moved");
    command->add_flag("--permanent", options->permanent,
                      "Delete for good instead of moving to the Trash (needs --yes)");
    command->add_flag("--yes", options->yes, "Confirm --permanent");
    addHomeOption(command, options->home);
    addJsonFlag(command, options->json);
    commandLine.onRun(command, [options] { return runClean(*options); });
}

} // namespace kestrow::cli
