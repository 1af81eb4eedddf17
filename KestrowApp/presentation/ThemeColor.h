#pragma once

#include "settings/AppTheme.h"

#include <QColor>
#include <QString>

namespace kestrow {

// The named colours of the screens; each has a light and a dark value.
enum class ThemeColor {
    ink,
    inkSecondary,
    inkTertiary,
    puttyWell,
    trackSystem,
    trackApps,
    trackOther,
    safeTeal,
    askAmber,
    accentOrange,
    dangerRed,
};

[[nodiscard]] QColor colorValue(ThemeColor color, ColorScheme scheme);
// The colour's name as the screens spell it, "safeTeal".
[[nodiscard]] QString colorName(ThemeColor color);

} // namespace kestrow
