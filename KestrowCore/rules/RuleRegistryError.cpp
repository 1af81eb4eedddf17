#include "rules/RuleRegistryError.h"

namespace kestrow {

QString RuleRegistryError::description() const
{
    switch (m_case) {
    case Case::invalidRuleId:
        return QStringLiteral("Rule ID '") + m_value +
               QStringLiteral("' is invalid. It must be non-empty and contain only alphanumeric characters, dots, "
                              "and underscores.");
    case Case::duplicateRuleId:
        return QStringLiteral("Rule with ID '") + m_value + QStringLiteral("' already exists in the registry.");
    case Case::emptyPatterns:
        return QStringLiteral("Rule '") + m_value + QStringLiteral("' must define at least one path pattern.");
    case Case::cannotOverwriteBuiltIn:
        return QStringLiteral("Cannot overwrite built-in rule '") + m_value + QStringLiteral("' with a dynamic rule.");
    case Case::sandboxViolation:
        return QStringLiteral("Rule rejected by sandbox security validator: ") + m_value;
    case Case::catalogPersistenceFailed:
        return QStringLiteral("Failed to persist rule catalog to disk: ") + m_value;
    case Case::catalogDecodingFailed:
        return QStringLiteral("Failed to parse rules.json: ") + m_value;
    }
    return {};
}

} // namespace kestrow
