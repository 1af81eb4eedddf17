#include "RulesCommand.h"

#include "CategoryOption.h"
#include "UserRules.h"

#include "rules/RuleRegistry.h"
#include "support/JsonWriter.h"

#include <QDateTime>
#include <QStringList>

#include <stdexcept>

namespace kestrow::cli {

namespace {

struct RulesOptions {
    std::string home;
    bool json = false;
    std::string id;
    std::string name;
    std::vector<std::string> patterns;
    std::string category;
    std::string tier;
    std::string description;
};

QString folded(const QString& text)
{
    return text.toLower().remove(QLatin1Char('_'));
}

RiskTier parseTier(const std::string& given)
{
    const QString text = folded(QString::fromStdString(given));
    for (const RiskTier tier : RiskTier::allCases())
        if (folded(tier.rawValue()) == text)
            return tier;
    throw UsageError("--tier " + given +
                     ": unknown tier. Accepted: SAFE_TO_DELETE, REVIEW_REQUIRED, KEEP (any case, "
                     "underscores optional).");
}

QString table(const std::vector<RuleDefinition>& rules, const QString& rulesFile)
{
    QString out = QStringLiteral("%1 %2 %3 %4 %5 %6\n")
                      .arg(QStringLiteral("ID").leftJustified(28), QStringLiteral("TIER").leftJustified(15),
                           QStringLiteral("CATEGORY").leftJustified(18), QStringLiteral("SOURCE").leftJustified(8),
                           QStringLiteral("STATE").leftJustified(8), QStringLiteral("PATTERNS"));
    qsizetype custom = 0;
    for (const RuleDefinition& rule : rules) {
        custom += rule.isBuiltIn ? 0 : 1;
        QString patterns = rule.patterns.join(QStringLiteral(", "));
        if (!rule.excludedPatterns.isEmpty())
            patterns +=
                QStringLiteral(" (except ") + rule.excludedPatterns.join(QStringLiteral(", ")) + QLatin1Char(')');
        out += QStringLiteral("%1 %2 %3 %4 %5 %6\n")
                   .arg(rule.id.leftJustified(28), rule.riskTier.rawValue().leftJustified(15),
                        rule.category.rawValue().leftJustified(18),
                        (rule.isBuiltIn ? QStringLiteral("built-in") : QStringLiteral("custom")).leftJustified(8),
                        (rule.enabled ? QStringLiteral("enabled") : QStringLiteral("disabled")).leftJustified(8),
                        patterns);
    }
    out += QStringLiteral("\n%1 rules: %2 built in, %3 custom (kept in %4).\n")
               .arg(rules.size())
               .arg(static_cast<qsizetype>(rules.size()) - custom)
               .arg(custom)
               .arg(rulesFile);
    return out;
}

int runList(const RulesOptions& options)
{
    const auto registry = loadUserRules(resolveHome(options.home));
    const std::vector<RuleDefinition> rules = registry->allRules();
    if (options.json) {
        JsonValue::Array array;
        for (const RuleDefinition& rule : rules)
            array.push_back(rule.toJson(DateEncoding::iso8601));
        printOut(JsonWriter::prettySorted(array) + '\n');
    } else {
        printOut(table(rules, registry->rulesFileURL()));
    }
    return exitSuccess;
}

int runAdd(const RulesOptions& options)
{
    const RiskTier tier = parseTier(options.tier);
    const StorageCategory category = parseCategoryOption(options.category);
    const auto registry = loadUserRulesToChange(resolveHome(options.home));
    QStringList patterns;
    for (const std::string& pattern : options.patterns)
        patterns.append(pathArgument(pattern));
    const QDateTime now = QDateTime::currentDateTimeUtc();
    const RuleDefinition rule{
        .id = QString::fromStdString(options.id),
        .name = QString::fromStdString(options.name),
        .description = QString::fromStdString(options.description.empty() ? options.name : options.description),
        .category = category,
        .riskTier = tier,
        .patterns = patterns,
        .excludedPatterns = {},
        .isRegenerable = tier == RiskTier::safeToDelete,
        .isBuiltIn = false,
        .enabled = true,
        .createdAt = now,
        .updatedAt = now,
    };
    const bool replacing = registry->rule(rule.id).has_value();
    registry->registerRule(rule);
    printOut(QStringLiteral("%1 rule '%2' (%3, %4) matching %5.\n")
                 .arg(replacing ? QStringLiteral("Replaced") : QStringLiteral("Added"), rule.id,
                      rule.riskTier.rawValue(), rule.category.rawValue(), rule.patterns.join(QStringLiteral(", "))));
    return exitSuccess;
}

int runRemove(const RulesOptions& options)
{
    const auto registry = loadUserRulesToChange(resolveHome(options.home));
    const QString id = QString::fromStdString(options.id);
    const bool existed = registry->rule(id).has_value();
    registry->removeRule(id);
    printOut(existed ? QStringLiteral("Removed rule '%1'.\n").arg(id)
                     : QStringLiteral("No rule has the id '%1': nothing to remove.\n").arg(id));
    return exitSuccess;
}

int runSwitch(const RulesOptions& options, bool enabled)
{
    const auto registry = loadUserRulesToChange(resolveHome(options.home));
    const QString id = QString::fromStdString(options.id);
    // A built-in's switch lives only as long as its registry, so from here it would change nothing.
    if (const auto rule = registry->rule(id); rule && rule->isBuiltIn) {
        printError(QStringLiteral("kestrow: '%1' is a built-in rule; its switch is not kept between runs, so it "
                                  "cannot be %2 here. Add a rule of your own instead.")
                       .arg(id, enabled ? QStringLiteral("enabled") : QStringLiteral("disabled")));
        return exitFailure;
    }
    registry->setRuleEnabled(id, enabled);
    printOut(
        QStringLiteral("%1 rule '%2'.\n").arg(enabled ? QStringLiteral("Enabled") : QStringLiteral("Disabled"), id));
    return exitSuccess;
}

CLI::App* addRulesSubcommand(CommandLine& commandLine, CLI::App* rules, const char* name, const char* help,
                             std::function<int(const RulesOptions&)> run, std::shared_ptr<RulesOptions> options)
{
    CLI::App* command = rules->add_subcommand(name, help);
    addHomeOption(command, options->home);
    commandLine.onRun(command, [options, run = std::move(run)] { return run(*options); });
    return command;
}

void addIdArgument(CLI::App* command, RulesOptions& options)
{
    command->add_option("id", options.id, "The rule's id, as `kestrow rules list` shows it")
        ->required()
        ->type_name("ID");
}

} // namespace

void setupRulesCommand(CommandLine& commandLine)
{
    CLI::App* rules = commandLine.app().add_subcommand(
        "rules", "List the cleanup rules and manage your own (kept in ~/.kestrow/rules.json); your rules take part "
                 "in every later scan.");
    rules->require_subcommand(1);

    auto list = std::make_shared<RulesOptions>();
    addJsonFlag(
        addRulesSubcommand(commandLine, rules, "list", "List every rule, built-in and custom, by id", runList, list),
        list->json);

    auto add = std::make_shared<RulesOptions>();
    CLI::App* addCommand = addRulesSubcommand(commandLine, rules, "add",
                                              "Add a rule of your own (or replace one of yours with the same "
                                              "id); its patterns must pass the sandbox",
                                              runAdd, add);
    addCommand->add_option("--id", add->id, "Letters, digits, dots, underscores and hyphens, e.g. custom.mlx_models")
        ->required()
        ->type_name("ID");
    addCommand->add_option("--name", add->name, "Human-readable name")->required()->type_name("NAME");
    addCommand
        ->add_option("--pattern", add->patterns,
                     "Glob pattern (repeatable): ~ is the home, * one name, ** any folders, e.g. '~/.cache/mlx/**'")
        ->required()
        ->type_name("PATTERN");
    addCommand->add_option("--category", add->category, "Storage category, e.g. DYNAMIC_RULE or aiModelWeights")
        ->required()
        ->type_name("NAME");
    addCommand->add_option("--tier", add->tier, "SAFE_TO_DELETE, REVIEW_REQUIRED or KEEP")
        ->required()
        ->type_name("TIER");
    addCommand->add_option("--description", add->description, "One sentence on what it covers (default: the name)")
        ->type_name("TEXT");

    auto remove = std::make_shared<RulesOptions>();
    addIdArgument(addRulesSubcommand(commandLine, rules, "remove", "Remove one of your rules", runRemove, remove),
                  *remove);
    auto enable = std::make_shared<RulesOptions>();
    addIdArgument(addRulesSubcommand(
                      commandLine, rules, "enable", "Switch one of your rules back on",
                      [](const RulesOptions& options) { return runSwitch(options, true); }, enable),
                  *enable);
    auto disable = std::make_shared<RulesOptions>();
    addIdArgument(addRulesSubcommand(
                      commandLine, rules, "disable", "Switch one of your rules off without removing it",
                      [](const RulesOptions& options) { return runSwitch(options, false); }, disable),
                  *disable);
}

} // namespace kestrow::cli
