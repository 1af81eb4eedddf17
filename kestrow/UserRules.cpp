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

} // namespace kestrow::cli
