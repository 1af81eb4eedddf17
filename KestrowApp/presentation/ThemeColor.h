#pragma once

#include "settings/AppTheme.h"

#include <QColor>

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

} // namespace kestrow
