#pragma once

#include <QString>

#include <array>
#include <optional>

namespace kestrow {

// The sidebar groups that categories fall into.
class CategoryGroup {
public:
    enum Value : int { developer, system, applications, files, startup, dynamic };

    constexpr CategoryGroup(Value value)
        : m_value(value)
    {
    }
    constexpr operator Value() const { return m_value; }

    [[nodiscard]] QString rawValue() const;
    [[nodiscard]] QString displayName() const;

    [[nodiscard]] static std::optional<CategoryGroup> fromRawValue(const QString& raw);
    [[nodiscard]] static constexpr std::array<CategoryGroup, 6> allCases()
    {
        return {developer, system, applications, files, startup, dynamic};
    }

private:
    Value m_value;
};

} // namespace kestrow
