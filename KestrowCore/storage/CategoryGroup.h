#pragma once

#include "support/EnumValue.h"

#include <QString>

#include <optional>

namespace kestrow {

// The sidebar groups that categories fall into.
enum class CategoryGroupValue { developer, system, applications, files, startup, dynamic };

class CategoryGroup : public EnumValue<CategoryGroup, CategoryGroupValue, 6> {
public:
    using EnumValue::EnumValue;
    using enum CategoryGroupValue;

    [[nodiscard]] QString rawValue() const;
    [[nodiscard]] QString displayName() const;

    [[nodiscard]] static std::optional<CategoryGroup> fromRawValue(const QString& raw);
};

} // namespace kestrow
