#include "CheckCommand.h"

#include "CategoryOption.h"
#include "CheckOutput.h"
#include "UserRules.h"

#include "policy/PathChecker.h"

#include <algorithm>

namespace kestrow::cli {

namespace {

struct CheckOptions {
    std::vector<std::string> paths;
    std::string home;
    std::string category;
    bool json = false;
};

int runCheck(const CheckOptions& options)
{
    const QString home = resolveHome(options.home);
    const StorageCategory category = options.category.empty() ? StorageCategory(StorageCategory::developerCache)
                                                              : parseCategoryOption(options.category);
    const PathChecker checker(home, loadUserRules(home));

    std::vector<PathCheckOutcome> outcomes;
    for (const std::string& given : options.paths)
        outcomes.push_back(checker.check(pathArgument(given), category));

    reportChecks(outcomes, options.json);
    const bool anyRefused = std::any_of(outcomes.begin(), outcomes.end(),
                                        [](const PathCheckOutcome& outcome) { return outcome.error.has_value(); });
    return anyRefused ? exitFailure : exitSuccess;
}

} // namespace

void setupCheckCommand(CommandLine& commandLine)
{
    auto options = std::make_shared<CheckOptions>();
    CLI::App* command = commandLine.app().add_subcommand(
        "check", "Tell for each path whether it may be moved to the Trash at all and how safe removing it would be. "
                 "Nothing is changed.");
    command->add_option("path", options->paths, "A path to check; \"~\" stands for the home")
        ->required()
        ->type_name("PATH");
    addHomeOption(command, options->home);
    command
        ->add_option("--category", options->category,
                     "Tier the paths as items of this category (default DEVELOPER_CACHE), e.g. SYSTEM_LOGS")
        ->type_name("NAME");
    addJsonFlag(command, options->json);
    commandLine.onRun(command, [options] { return runCheck(*options); });
}

} // namespace kestrow::cli
