#pragma once

#include "support/EnumCases.h"

#include <QString>

#include <optional>

namespace kestrow {

// The sidebar groups that categories fall into.
class CategoryGroup {
public:
    enum class Value { developer, system, applications, files, startup, dynamic };
    using enum Value;
    static constexpr std::size_t count = 6;

    constexpr CategoryGroup(Value value)
        : m_value(value)
    {
    }
    constexpr operator Value() const { return m_value; }

    [[nodiscard]] QString rawValue() const;
    [[nodiscard]] QString displayName() const;

    [[nodiscard]] static std::optional<CategoryGroup> fromRawValue(const QString& raw);
    [[nodiscard]] static constexpr std::array<CategoryGroup, count> allCases()
    {
        return enumCases<CategoryGroup, count>();
    }

private:
    Value m_value;
};

} // namespace kestrow
