#include "views/ThemePalette.h"

#include "presentation/ThemeColor.h"

#include <QGuiApplication>
#include <QPalette>

#include <array>

namespace kestrow {

namespace {

constexpr std::array<ThemeColor, 11> allColors{
    ThemeColor::ink,         ThemeColor::inkSecondary, ThemeColor::inkTertiary, ThemeColor::puttyWell,
    ThemeColor::trackSystem, ThemeColor::trackApps,    ThemeColor::trackOther,  ThemeColor::safeTeal,
    ThemeColor::askAmber,    ThemeColor::accentOrange, ThemeColor::dangerRed,
};

} // namespace

ThemePalette::ThemePalette(QObject* parent)
    : QObject(parent)
    , m_dark(systemIsDark())
{
}

void ThemePalette::setDark(bool dark)
{
    if (m_dark == dark)
        return;
    m_dark = dark;
    Q_EMIT changed();
}

bool ThemePalette::systemIsDark()
{
    return QGuiApplication::palette().color(QPalette::Window).lightness() < 128;
}

QColor ThemePalette::color(const QString& name) const
{
    for (const ThemeColor named : allColors)
        if (colorName(named) == name)
            return colorValue(named, m_dark ? ColorScheme::dark : ColorScheme::light);
    return ink();
}

#define KESTROW_NAMED_COLOR(name)                                                                                      \
    QColor ThemePalette::name() const                                                                                  \
    {                                                                                                                  \
        return colorValue(ThemeColor::name, m_dark ? ColorScheme::dark : ColorScheme::light);                          \
    }
KESTROW_NAMED_COLOR(ink)
KESTROW_NAMED_COLOR(inkSecondary)
KESTROW_NAMED_COLOR(inkTertiary)
KESTROW_NAMED_COLOR(puttyWell)
KESTROW_NAMED_COLOR(trackSystem)
KESTROW_NAMED_COLOR(trackApps)
KESTROW_NAMED_COLOR(trackOther)
KESTROW_NAMED_COLOR(safeTeal)
KESTROW_NAMED_COLOR(askAmber)
KESTROW_NAMED_COLOR(accentOrange)
KESTROW_NAMED_COLOR(dangerRed)
#undef KESTROW_NAMED_COLOR

} // namespace kestrow
