#pragma once

#include "support/EnumValue.h"

#include <QString>

#include <optional>

namespace kestrow {

enum class AppTabValue { pulse, sweep, atlas, uninstall, tuneUp };

// The screens of the sidebar, in its order. The raw value is also the id and the title.
class AppTab : public EnumValue<AppTab, AppTabValue, 5> {
public:
    using EnumValue::EnumValue;
    using enum AppTabValue;

    [[nodiscard]] QString rawValue() const;
    [[nodiscard]] QString id() const { return rawValue(); }
    [[nodiscard]] QString iconName() const;

    [[nodiscard]] static std::optional<AppTab> fromRawValue(const QString& raw);
};

} // namespace kestrow
