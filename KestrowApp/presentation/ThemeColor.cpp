#include "presentation/ThemeColor.h"

#include <array>

namespace kestrow {

namespace {

struct ColorPair {
    QRgb light;
    QRgb dark;
};

// Indexed by ThemeColor.
constexpr std::array<ColorPair, 11> colors{{
    {0xff1d1f22, 0xfff2f1ee}, // ink
    {0xff5b6068, 0xffb4b8be}, // inkSecondary
    {0xff8a8f97, 0xff7d828a}, // inkTertiary
    {0xffe4e1da, 0xff2c2e32}, // puttyWell
    {0xff5c6470, 0xff8a94a3}, // trackSystem
    {0xff7f8ea3, 0xff5f7088}, // trackApps
    {0xffb9b4aa, 0xff56595e}, // trackOther
    {0xff1f9e8f, 0xff3cc4b2}, // safeTeal
    {0xffd49a1e, 0xffe8b547}, // askAmber
    {0xffe0692a, 0xfff08a4b}, // accentOrange
    {0xffd23b3b, 0xffef5f5f}, // dangerRed
}};

constexpr std::array<const char*, 11> names{"ink",         "inkSecondary", "inkTertiary", "puttyWell",
                                            "trackSystem", "trackApps",    "trackOther",  "safeTeal",
                                            "askAmber",    "accentOrange", "dangerRed"};

} // namespace

QColor colorValue(ThemeColor color, ColorScheme scheme)
{
    const ColorPair& pair = colors[static_cast<std::size_t>(color)];
    return QColor::fromRgba(scheme == ColorScheme::dark ? pair.dark : pair.light);
}

QString colorName(ThemeColor color)
{
    return QLatin1String(names[static_cast<std::size_t>(color)]);
}

} // namespace kestrow
