#include "AnomaliesCommand.h"

#include "ProgressLine.h"
#include "UserRules.h"

#include "analysis/AnomalyDetector.h"
#include "platform/NativePath.h"
#include "platform/PathText.h"
#include "rules/RuleRegistry.h"
#include "support/ByteCountFormatter.h"
#include "support/JsonWriter.h"

#include <algorithm>

namespace kestrow::cli {

namespace {

struct AnomaliesOptions {
    std::string home;
    double minSizeMB = 100;
    std::string adopt;
    bool json = false;
};

// Looks where the agent tool looks: the default roots, two levels deep.
std::vector<StorageAnomaly> detect(const QString& home, std::int64_t minSizeBytes,
                                   std::shared_ptr<const RuleRegistry> registry)
{
    const AnomalyDetector detector(AnomalyDetectorConfiguration(minSizeBytes, std::nullopt, 2, home),
                                   std::move(registry));
    ProgressLine progressLine;
    progressLine.update(QStringLiteral("Looking for heavy folders no rule knows..."));
    std::vector<StorageAnomaly> anomalies = detector.detectAnomalies();
    progressLine.clear();
    return anomalies;
}

QString anomalyText(const StorageAnomaly& anomaly)
{
    const RuleDefinition& rule = *anomaly.proposedRule;
    QString text =
        QStringLiteral("%1\n  %2, %3 %4, confidence %5, %6\n")
            .arg(NativePath::displayText(anomaly.path), ByteCountFormatter::format(anomaly.allocatedSizeBytes))
            .arg(anomaly.fileCount)
            .arg(anomaly.fileCount == 1 ? QStringLiteral("file") : QStringLiteral("files"),
                 QString::number(anomaly.confidenceScore, 'f', 2), anomaly.suggestedRiskTier.displayName());
    if (!anomaly.matchedKeywords.isEmpty())
        text += QStringLiteral("  keywords: ") + anomaly.matchedKeywords.join(QStringLiteral(", ")) + QLatin1Char('\n');
    text += QStringLiteral("  ") + anomaly.anomalyDescription + QLatin1Char('\n');
    text +=
        QStringLiteral("  proposed rule: %1 (%2, %3) matching %4\n")
            .arg(rule.id, rule.riskTier.rawValue(), rule.category.rawValue(), rule.patterns.join(QStringLiteral(", ")));
    return text;
}

void report(const std::vector<StorageAnomaly>& anomalies, bool json)
{
    if (json) {
        JsonValue::Array array;
        for (const StorageAnomaly& anomaly : anomalies)
            array.push_back(anomaly.toJson(DateEncoding::iso8601));
        printOut(JsonWriter::write(JsonValue(std::move(array)), {.pretty = true, .sortKeys = false}) + '\n');
        return;
    }
    if (anomalies.empty()) {
        printOut(QStringLiteral("No anomalies: every heavy folder in the usual places is known to a rule, or none "
                                "looks like a cache.\n"));
        return;
    }
    QString out;
    for (const StorageAnomaly& anomaly : anomalies)
        out += anomalyText(anomaly) + QLatin1Char('\n');
    out +=
        QStringLiteral("These are proposals; nothing was changed. Adopt one with `kestrow anomalies --adopt PATH`.\n");
    printOut(out);
}

int adopt(const QString& home, const AnomaliesOptions& options, std::int64_t minSizeBytes)
{
    const QString wanted = PathText::standardizing(absoluteFromWorkingFolder(pathArgument(options.adopt)));
    const auto registry = loadUserRulesToChange(home);
    const std::vector<StorageAnomaly> anomalies = detect(home, minSizeBytes, registry);
    const auto found = std::find_if(anomalies.begin(), anomalies.end(), [&](const StorageAnomaly& anomaly) {
        return PathText::standardizing(anomaly.path) == wanted;
    });
    if (found == anomalies.end())
        throw std::runtime_error(NativePath::encode(wanted).toStdString() +
                                 " is not among the anomalies found: run `kestrow anomalies` to see them, and give "
                                 "one of their paths.");
    const RuleDefinition& rule = *found->proposedRule;
    const bool replacing = registry->rule(rule.id).has_value();
    registry->registerRule(rule);
    if (options.json) {
        printOut(JsonWriter::write(rule.toJson(DateEncoding::iso8601), {.pretty = true, .sortKeys = false}) + '\n');
        return exitSuccess;
    }
    printOut(QStringLiteral("%1 rule '%2' (%3, %4) matching %5. Later scans report it through this rule.\n")
                 .arg(replacing ? QStringLiteral("Replaced") : QStringLiteral("Adopted"), rule.id,
                      rule.riskTier.rawValue(), rule.category.rawValue(), rule.patterns.join(QStringLiteral(", "))));
    return exitSuccess;
}

int runAnomalies(const AnomaliesOptions& options)
{
    if (options.minSizeMB < 0)
        throw UsageError("--min-size-mb must be zero or more megabytes.");
    const QString home = resolveHome(options.home);
    // Mebibytes, as the agent tool counts them.
    const auto minSizeBytes = static_cast<std::int64_t>(options.minSizeMB * 1024 * 1024);
    if (!options.adopt.empty())
        return adopt(home, options, minSizeBytes);
    // The user's own rules claim their folders too.
    report(detect(home, minSizeBytes, loadUserRules(home)), options.json);
    return exitSuccess;
}

} // namespace

void setupAnomaliesCommand(CommandLine& commandLine)
{
    auto options = std::make_shared<AnomaliesOptions>();
    CLI::App* command = commandLine.app().add_subcommand(
        "anomalies", "Find heavy folders in ~/.cache, ~/Library, ~/Developer and ~/Projects that no rule knows and "
                     "that look like caches, each with a proposed rule. Nothing is changed unless you adopt one.");
    command
        ->add_option("--min-size-mb", options->minSizeMB, "Smallest folder reported, in megabytes of 1,048,576 bytes")
        ->type_name("N")
        ->capture_default_str();
    command
        ->add_option("--adopt", options->adopt,
                     "Add the proposed rule of the anomaly at PATH to your rules, so that scans report it as a rule's "
                     "item")
        ->type_name("PATH");
    addHomeOption(command, options->home);
    addJsonFlag(command, options->json);
    commandLine.onRun(command, [options] { return runAnomalies(*options); });
}

} // namespace kestrow::cli
