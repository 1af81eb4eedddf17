#include "ScanCommand.h"

#include "ProgressLine.h"

#include "scan/DeepScanEngine.h"
#include "support/ByteCountFormatter.h"
#include "support/JsonWriter.h"

#include <QStringList>

#include <cmath>
#include <map>

namespace kestrow::cli {

namespace {

struct ScanOptions {
    std::string home;
    std::vector<std::string> categories;
    double minSizeMB = 0;
    bool json = false;
};

QString acceptedCategoryNames()
{
    QStringList names;
    for (const StorageCategory category : StorageCategory::allCases())
        names.append(category.rawValue());
    return names.join(QStringLiteral(", "));
}

CategorySet parseCategories(const std::vector<std::string>& given)
{
    CategorySet categories;
    for (const std::string& text : given) {
        const auto category = StorageCategory::parse(QString::fromStdString(text));
        if (!category)
            throw UsageError("--category " + text + ": unknown category. Accepted names (any case, "
                             "underscores optional): " + acceptedCategoryNames().toStdString());
        categories.insert(*category);
    }
    return categories;
}

QString padded(const QString& text, int width)
{
    return text.leftJustified(width, QLatin1Char(' '));
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

    DeepScanEngine engine({.homeURL = home});
    ProgressLine progressLine;
    std::int64_t found = 0;
    std::int64_t bytes = 0;
    ScanResult result = engine.scan(categories, [&](const ScanProgress& progress) {
        found += progress.itemsFound;
        bytes += progress.totalAllocatedBytesScanned;
        progressLine.update(QStringLiteral("Scanning: %1 items, %2  %3")
                                .arg(found)
                                .arg(ByteCountFormatter::format(bytes), progress.currentPath));
    });
    progressLine.clear();

    if (options.minSizeMB > 0) {
        const auto threshold = static_cast<std::int64_t>(std::llround(options.minSizeMB * 1000.0 * 1000.0));
        std::erase_if(result.items, [threshold](const DiscoveredItem& item) { return item.allocatedSizeBytes < threshold; });
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
    command->add_option("--category", options->categories,
                        "Scan only this category (repeatable), e.g. DEVELOPER_CACHE or developerCache")
        ->type_name("NAME");
    command->add_option("--min-size", options->minSizeMB, "Leave out items smaller than this many megabytes")
        ->type_name("MB");
    addJsonFlag(command, options->json);
    commandLine.onRun(command, [options] { return runScan(*options); });
}

} // namespace kestrow::cli
