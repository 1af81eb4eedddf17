#include "settings/AppTheme.h"

#include "support/EnumTable.h"

namespace kestrow {

namespace {

struct AppThemeRow {
    AppThemeValue value;
    const char* rawValue;
    const char* displayName;
    const char* iconName;
};

constexpr EnumTable<AppThemeRow, AppTheme::count> themes{{{
    {AppTheme::system, "system", "System", "circle.righthalf.filled"},
    {AppTheme::light, "light", "Light", "sun.max.fill"},
    {AppTheme::dark, "dark", "Dark", "moon.fill"},
}}};
static_assert(themes.isInDeclarationOrder());

} // namespace

QString AppTheme::rawValue() const
{
    return themes.rawValue(m_value);
}

QString AppTheme::displayName() const
{
    return themes.text(m_value, &AppThemeRow::displayName);
}

QString AppTheme::iconName() const
{
    return themes.text(m_value, &AppThemeRow::iconName);
}

std::optional<ColorScheme> AppTheme::colorScheme() const
{
    switch (m_value) {
    case light:
        return ColorScheme::light;
    case dark:
        return ColorScheme::dark;
    case system:
        break;
    }
    return std::nullopt;
}

AppTheme AppTheme::fromStored(const QString& raw)
{
    return themes.fromRawValue(raw).value_or(system);
}

} // namespace kestrow
