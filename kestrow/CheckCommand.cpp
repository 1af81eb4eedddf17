#include "CheckCommand.h"

#include "CategoryOption.h"
#include "RulesCommand.h"

#include "rules/RuleRegistry.h"
#include "safety/RiskClassifier.h"
#include "safety/SandboxValidator.h"
#include "support/JsonWriter.h"
#include "support/PathText.h"

namespace kestrow::cli {

namespace {

struct CheckOptions {
    std::vector<std::string> paths;
    std::string home;
    std::string category;
    bool json = false;
};

// What `check` found for one path.
struct CheckOutcome {
    QString path; // as given
    std::optional<SandboxSecurityError> error;
    RiskClassificationResult classification;

    [[nodiscard]] JsonValue toJson() const
    {
        JsonValue json = JsonValue::object({{QStringLiteral("path"), path}, {QStringLiteral("allowed"), !error}});
        if (error)
            json.insert(QStringLiteral("error"), error->description());
        json.insert(QStringLiteral("riskTier"), classification.riskTier.rawValue());
        json.insert(QStringLiteral("confidence"), classification.confidence);
        json.insert(QStringLiteral("reason"), classification.reason);
        if (classification.matchedRuleId)
            json.insert(QStringLiteral("matchedRuleId"), *classification.matchedRuleId);
        json.insert(QStringLiteral("hasCacheDirTag"), classification.hasCacheDirTag);
        return json;
    }

    [[nodiscard]] QString line() const
    {
        QString text = path + QStringLiteral(": ");
        text += error ? QStringLiteral("refused: ") + error->description() : QStringLiteral("allowed.");
        text += QStringLiteral(" Tier: %1 (confidence %2)")
                    .arg(classification.riskTier.displayName(), QString::number(classification.confidence, 'f', 2));
        // The refusal already stands in front when it is the reason.
        if (!error || classification.reason != error->description())
            text += QStringLiteral(": ") + classification.reason;
        else
            text += QLatin1Char('.');
        if (classification.matchedRuleId)
            text += QStringLiteral(" [rule ") + *classification.matchedRuleId + QLatin1Char(']');
        if (classification.hasCacheDirTag)
            text += QStringLiteral(" [cache directory tag]");
        return text + QLatin1Char('\n');
    }
};

int runCheck(const CheckOptions& options)
{
    const QString home = resolveHome(options.home);
    const StorageCategory category = options.category.empty() ? StorageCategory(StorageCategory::developerCache)
                                                              : parseCategoryOption(options.category);
    const RiskClassifier classifier(home, loadUserRules(home));
    const QString homePath = PathText::standardizing(home);

    std::vector<CheckOutcome> outcomes;
    for (const std::string& given : options.paths) {
        CheckOutcome outcome{.path = pathArgument(given)};
        try {
            SandboxValidator::validate(outcome.path, home);
        } catch (const SandboxSecurityError& error) {
            outcome.error = error;
        }
        // The classifier takes a location: "~" expanded, relative text made absolute.
        const QString location = PathText::standardizedLocation(PathText::expandingTilde(outcome.path, homePath));
        outcome.classification = classifier.classify(location, category, false);
        // What the sandbox refuses is kept whatever the classifier advises; its own reason for
        // keeping it stands when it has one.
        if (outcome.error && outcome.classification.riskTier != RiskTier::keep)
            outcome.classification = {
                .riskTier = RiskTier::keep, .confidence = 1.0, .reason = outcome.error->description()};
        outcomes.push_back(std::move(outcome));
    }

    if (options.json) {
        JsonValue::Array array;
        for (const CheckOutcome& outcome : outcomes)
            array.push_back(outcome.toJson());
        printOut(JsonWriter::write(array, {.pretty = true, .sortKeys = false}) + '\n');
    } else {
        for (const CheckOutcome& outcome : outcomes)
            printOut(outcome.line());
    }
    const bool anyRefused =
        std::any_of(outcomes.begin(), outcomes.end(), [](const CheckOutcome& outcome) { return outcome.error; });
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
