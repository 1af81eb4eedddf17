#include "UserRules.h"

#include "CommandLine.h"

#include "rules/RuleRegistry.h"

#include <stdexcept>

namespace kestrow::cli {

std::shared_ptr<RuleRegistry> loadUserRules(const QString& home)
{
    auto registry = std::make_shared<RuleRegistry>(RuleRegistry::Options{.homeURL = home});
    try {
        registry->loadCustomRules();
    } catch (const RuleRegistryError& error) {
        QString text = error.description();
        if (!text.endsWith(QLatin1Char('.')))
            text += QLatin1Char('.');
        text += error.kind() == RuleRegistryError::Case::catalogDecodingFailed
                    ? QStringLiteral(" Fix %1, or move it away to go on with the built-in rules.")
                    : QStringLiteral(" Check that %1 can be read.");
        throw std::runtime_error(text.arg(registry->rulesFileURL()).toStdString());
    }
    for (const RuleRegistry::RefusedRule& refused : registry->refusedRules())
        printError(QStringLiteral("kestrow: warning: rule '%1' in %2 is not used: %3")
                       .arg(refused.rule.id, registry->rulesFileURL(), refused.error.description()));
    return registry;
}

std::shared_ptr<RuleRegistry> loadUserRulesToChange(const QString& home)
{
    auto registry = loadUserRules(home);
    const std::vector<RuleRegistry::RefusedRule> refused = registry->refusedRules();
    if (refused.empty())
        return registry;
    QStringList ids;
    for (const RuleRegistry::RefusedRule& rule : refused)
        ids.append(QLatin1Char('\'') + rule.rule.id + QLatin1Char('\''));
    throw std::runtime_error(QStringLiteral("%1 holds rules the sandbox refuses (%2): fix or remove them there "
                                            "first, as rewriting the file now would drop them. Nothing was changed.")
                                 .arg(registry->rulesFileURL(), ids.join(QStringLiteral(", ")))
                                 .toStdString());
}

} // namespace kestrow::cli
