#include "ScanCommand.h"

#include "CategoryOption.h"
#include "ProgressLine.h"
#include "ScanOutput.h"
#include "ScanPacing.h"
#include "UserRules.h"

#include "scan/DeepScanEngine.h"
#include "scan/ScanRequest.h"
#include "support/ByteCountFormatter.h"

#include <QStringList>

#include <algorithm>
#include <cmath>

namespace kestrow::cli {

namespace {

struct ScanOptions {
    std::string home;
    std::vector<std::string> categories;
    double minSizeMB = 0;
    bool json = false;
    std::vector<std::string> excludedPaths;
    std::vector<std::string> disabledTargets;
    bool noGovernor = false;
};

CategorySet parseCategories(const std::vector<std::string>& given)
{
    CategorySet categories;
    for (const std::string& text : given)
        categories.insert(parseCategoryOption(text));
    return categories;
}

QString acceptedTargetNames()
{
    QStringList names;
    for (const ScanTarget target : ScanTarget::allCases())
        names.append(target.rawValue());
    return names.join(QStringLiteral(", "));
}

std::set<ScanTarget> parseTargets(const std::vector<std::string>& given)
{
    std::set<ScanTarget> targets;
    for (const std::string& text : given) {
        const auto all = ScanTarget::allCases();
        const auto found = std::find_if(all.begin(), all.end(), [&](ScanTarget target) {
            return target.rawValue().compare(QString::fromStdString(text), Qt::CaseInsensitive) == 0;
        });
        if (found == all.end())
            throw UsageError("--disable-target " + text +
                             ": unknown scan target. Accepted names: " + acceptedTargetNames().toStdString());
        targets.insert(*found);
    }
    return targets;
}

// Exclusions as given; relative ones are taken against the working folder, "~" stays for the
// filter to expand against the home.
QStringList exclusions(const std::vector<std::string>& given)
{
    QStringList paths;
    for (const std::string& text : given) {
        const QString path = pathArgument(text).trimmed();
        const bool keepsItsForm = path.isEmpty() || path.startsWith(QLatin1Char('/')) || path == QLatin1String("~") ||
                                  path.startsWith(QLatin1String("~/"));
        paths.append(keepsItsForm ? path : absoluteFromWorkingFolder(path));
    }
    return paths;
}

// The request the options make, the minimum given in megabytes.
ScanRequest scanRequest(const ScanOptions& options, const QString& home)
{
    const CategorySet categories = parseCategories(options.categories);
    if (options.minSizeMB < 0)
        throw UsageError("--min-size must be zero or more megabytes.");
    const std::optional<std::int64_t> minimumBytes =
        options.minSizeMB > 0
            ? std::optional(static_cast<std::int64_t>(std::llround(options.minSizeMB * 1000.0 * 1000.0)))
            : std::nullopt;
    return ScanRequest(categories,
                       ScanTargetFilter(parseTargets(options.disabledTargets), exclusions(options.excludedPaths), home),
                       minimumBytes);
}

int runScan(const ScanOptions& options)
{
    const QString home = resolveHome(options.home);
    const ScanRequest request = scanRequest(options, home);

    // The user's own rules take part through the rule stage and the classifier.
    DeepScanEngine engine({.homeURL = home,
                           .ruleRegistry = loadUserRules(home),
                           .thermalGovernor = makeScanGovernor(!options.noGovernor)});
    ProgressLine progressLine;
    std::int64_t found = 0;
    std::int64_t bytes = 0;
    const ScanResult result = engine.scan(request.categoriesToScan(), [&](const ScanProgress& progress) {
        found += progress.itemsFound;
        bytes += progress.totalAllocatedBytesScanned;
        progressLine.update(QStringLiteral("Scanning: %1 items, %2  %3")
                                .arg(found)
                                .arg(ByteCountFormatter::format(bytes), progress.currentPath));
    });
    progressLine.clear();

    reportScan(request.narrowed(result), options.json);
    return exitSuccess;
}

} // namespace

void setupScanCommand(CommandLine& commandLine)
{
    auto options = std::make_shared<ScanOptions>();
    CLI::App* command = commandLine.app().add_subcommand(
        "scan", "Find caches, build products, model stores and logs below the home, and tier each by how safe it "
                "is to remove. Nothing is changed.");
    addHomeOption(command, options->home);
    command
        ->add_option("--category", options->categories,
                     "Scan only this category (repeatable), e.g. DEVELOPER_CACHE or developerCache")
        ->type_name("NAME");
    command->add_option("--min-size", options->minSizeMB, "Leave out items smaller than this many megabytes")
        ->type_name("MB");
    command
        ->add_option("--exclude", options->excludedPaths,
                     "Leave out this path, what lies in it and what holds it (repeatable); ~ is the home")
        ->type_name("PATH");
    command
        ->add_option("--disable-target", options->disabledTargets,
                     "Switch off a scan target (repeatable): " + acceptedTargetNames().toStdString())
        ->type_name("NAME");
    command->add_flag("--no-governor", options->noGovernor,
                      "Scan at full speed even when the machine is hot, on battery or in low-power mode");
    addJsonFlag(command, options->json);
    commandLine.onRun(command, [options] { return runScan(*options); });
}

} // namespace kestrow::cli
