#pragma once

#include "support/EnumCases.h"

#include <QString>

#include <optional>

namespace kestrow {

// Named base folders for building rule patterns. No rule carries one: patterns are
// self-contained strings, and this is vocabulary for tools that compose them.
class RuleBaseDirectory {
public:
    enum class Value { home, userCaches, userApplicationSupport, userDeveloper, systemLibrary, absolute };
    using enum Value;
    static constexpr std::size_t count = 6;

    constexpr RuleBaseDirectory(Value value)
        : m_value(value)
    {
    }
    constexpr operator Value() const { return m_value; }

    // The encoded form: the case name.
    [[nodiscard]] QString rawValue() const;
    [[nodiscard]] static std::optional<RuleBaseDirectory> fromRawValue(const QString& raw);
    [[nodiscard]] static constexpr std::array<RuleBaseDirectory, count> allCases()
    {
        return enumCases<RuleBaseDirectory, count>();
    }

private:
    Value m_value;
};

} // namespace kestrow
