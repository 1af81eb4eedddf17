#pragma once

#include "support/KestrowError.h"

#include <QString>

namespace kestrow {

// What the rule registry refuses or fails at. Each case carries one text; the description
// wraps it in the case's fixed template.
class RuleRegistryError : public KestrowError {
public:
    enum class Case {
        invalidRuleId,
        duplicateRuleId,
        emptyPatterns,
        cannotOverwriteBuiltIn,
        sandboxViolation,
        catalogPersistenceFailed,
        catalogDecodingFailed,
    };

    RuleRegistryError(Case kind, QString value)
        : m_case(kind)
        , m_value(std::move(value))
    {
    }

    [[nodiscard]] Case kind() const { return m_case; }
    [[nodiscard]] const QString& value() const { return m_value; }
    [[nodiscard]] QString description() const override;

    friend bool operator==(const RuleRegistryError& a, const RuleRegistryError& b)
    {
        return a.m_case == b.m_case && a.m_value == b.m_value;
    }

private:
    Case m_case;
    QString m_value;
};

} // namespace kestrow
