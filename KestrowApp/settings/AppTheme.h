#pragma once

#include "support/EnumValue.h"

#include <QString>

#include <optional>

namespace kestrow {

// The appearance the application is locked to, if any.
enum class ColorScheme { light, dark };

enum class AppThemeValue { system, light, dark };

// The user's choice of appearance. The raw value is also the id.
class AppTheme : public EnumValue<AppTheme, AppThemeValue, 3> {
public:
    using EnumValue::EnumValue;
    using enum AppThemeValue;

    [[nodiscard]] QString rawValue() const;
    [[nodiscard]] QString id() const { return rawValue(); }
    [[nodiscard]] QString displayName() const;
    [[nodiscard]] QString iconName() const;
    // Absent for `system`, which follows the system's appearance.
    [[nodiscard]] std::optional<ColorScheme> colorScheme() const;

    // "light" and "dark" are themselves; any other text is `system`.
    [[nodiscard]] static AppTheme fromStored(const QString& raw);
};

} // namespace kestrow
