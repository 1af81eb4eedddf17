#include "ScanCommand.h"

#include "CategoryOption.h"
#include "ProgressLine.h"
#include "RulesCommand.h"

#include "platform/NativePath.h"
#include "platform/SystemSource.h"
#include "scan/DeepScanEngine.h"
#include "scan/ScanTargetFilter.h"
#include "support/ByteCountFormatter.h"
#include "support/JsonWriter.h"

#include <QStringList>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <iterator>
#include <map>

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

// The asked categories less those of disabled targets. When that leaves nothing, the asked
// ones are scanned all the same (an empty set would mean every category) and the filter then
// removes what they find.
CategorySet categoriesToRequest(const CategorySet& asked, const ScanTargetFilter& filter)
{
    const auto allowed = filter.categoriesToScan();
    if (!allowed)
        return asked;
    if (asked.empty())
        return *allowed;
    CategorySet both;
    std::set_intersection(asked.begin(), asked.end(), allowed->begin(), allowed->end(),
                          std::inserter(both, both.end()));
    return both.empty() ? asked : both;
}

// A scan is held back when it sleeps at checkpoints or stops at them; fewer parallel permits
// alone do not slow one scan, which holds a single permit.
bool holdsBack(const ConcurrencyProfile& profile)
{
    return profile.isPaused || profile.directorySleepMs > 0;
}

// Tells on standard error how the governor paces the scan and why. On a terminal the progress
// line is wiped first; its next update draws it again.
void reportPacing(const ConcurrencyProfile& profile)
{
    const QString state = profile.isPaused
                              ? QStringLiteral("paused")
                              : (holdsBack(profile) ? QStringLiteral("slowed") : QStringLiteral("back to full speed"));
    printError((standardErrorIsTerminal() ? QStringLiteral("\r\x1b[K") : QString()) + QStringLiteral("kestrow: scan ") +
               state + QStringLiteral(": ") + profile.reason);
}

std::shared_ptr<ThermalGovernor> makeGovernor(bool paced)
{
    if (!paced)
        return ThermalGovernor::unrestricted(SystemSource::current()->activeProcessorCount());
    auto governor = ThermalGovernor::makeDefault();
    const ConcurrencyProfile first = governor->currentProfile();
    if (holdsBack(first))
        reportPacing(first);
    governor->setProfileChangeHandler(
        [heldBack = std::make_shared<std::atomic<bool>>(holdsBack(first))](const ConcurrencyProfile& profile) {
            if (heldBack->exchange(holdsBack(profile)) || holdsBack(profile))
                reportPacing(profile);
        });
    return governor;
}

// Padded as shown: a raw byte of a name takes four columns ("\xE9").
QString padded(const QString& text, int width)
{
    return NativePath::displayText(text).leftJustified(width, QLatin1Char(' '));
}

QString table(const ScanResult& result)
{
    QString out;
    if (result.items.empty())
        out += QStringLiteral("Nothing found to clean.\n");
    for (const CategorySummary& category : result.summary.categoryBreakdown) {
        out += QStringLiteral("\n%1  (%2 items, %3)\n")
                   .arg(category.category.displayName())
                   .arg(category.itemCount)
                   .arg(category.formattedAllocatedBytes());
        for (const DiscoveredItem& item : result.items) {
            if (item.category != category.category)
                continue;
            out += QStringLiteral("  %1 %2 %3  %4\n")
                       .arg(padded(item.riskTier.displayName(), 16), item.formattedAllocatedSize().rightJustified(10),
                            padded(item.itemDescription, 36), item.path);
        }
    }
    out += QStringLiteral("\nFound %1 in %2 items. Safe to free: %3. To review: %4.\n")
               .arg(result.summary.formattedAllocatedBytes())
               .arg(result.summary.totalItems)
               .arg(result.summary.formattedSafeFreeableBytes(), result.summary.formattedReviewFreeableBytes());
    if (result.summary.requiresFullDiskAccess)
        out += QStringLiteral("Some items could not be read completely: grant access to see them whole.\n");
    for (const QString& warning : result.warnings)
        out += QStringLiteral("warning: ") + warning + QLatin1Char('\n');
    return out;
}

int runScan(const ScanOptions& options)
{
    const QString home = resolveHome(options.home);
    const CategorySet categories = parseCategories(options.categories);
    if (options.minSizeMB < 0)
        throw UsageError("--min-size must be zero or more megabytes.");
    const ScanTargetFilter filter(parseTargets(options.disabledTargets), exclusions(options.excludedPaths), home);

    // The user's own rules take part through the rule stage and the classifier.
    DeepScanEngine engine(
        {.homeURL = home, .ruleRegistry = loadUserRules(home), .thermalGovernor = makeGovernor(!options.noGovernor)});
    ProgressLine progressLine;
    std::int64_t found = 0;
    std::int64_t bytes = 0;
    ScanResult result = engine.scan(categoriesToRequest(categories, filter), [&](const ScanProgress& progress) {
        found += progress.itemsFound;
        bytes += progress.totalAllocatedBytesScanned;
        progressLine.update(QStringLiteral("Scanning: %1 items, %2  %3")
                                .arg(found)
                                .arg(ByteCountFormatter::format(bytes), progress.currentPath));
    });
    progressLine.clear();
    result = filter.apply(result);

    if (options.minSizeMB > 0) {
        const auto threshold = static_cast<std::int64_t>(std::llround(options.minSizeMB * 1000.0 * 1000.0));
        std::erase_if(result.items,
                      [threshold](const DiscoveredItem& item) { return item.allocatedSizeBytes < threshold; });
        result.summary = ScanSummary::from(result.items);
    }

    if (options.json)
        printOut(JsonWriter::write(result.toJson(DateEncoding::iso8601), {.pretty = true, .sortKeys = false}) + '\n');
    else
        printOut(table(result));
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
