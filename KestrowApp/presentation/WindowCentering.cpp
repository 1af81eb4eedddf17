#include "presentation/WindowCentering.h"

#include <algorithm>
#include <cmath>

namespace kestrow {

namespace {

// The key code of C on the keyboards the shortcut was made for, and the control code that
// Control-C produces.
constexpr int keyCodeC = 8;
constexpr char16_t controlC = 3;

} // namespace

QPoint CenteringMove::originAt(double progress) const
{
    const double eased = WindowCentering::easing().valueForProgress(std::clamp(progress, 0.0, 1.0));
    return {from.x() + static_cast<int>(std::lround((to.x() - from.x()) * eased)),
            from.y() + static_cast<int>(std::lround((to.y() - from.y()) * eased))};
}

QEasingCurve WindowCentering::easing()
{
    // The standard ease-out: a cubic Bézier through (0, 0), (0.58, 1) and (1, 1).
    QEasingCurve curve(QEasingCurve::BezierSpline);
    curve.addCubicBezierSegment(QPointF(0, 0), QPointF(0.58, 1), QPointF(1, 1));
    return curve;
}

QPoint WindowCentering::centredOrigin(QSize size, const QRect& screen)
{
    return {screen.x() + std::max(0, (screen.width() - size.width()) / 2),
            screen.y() + std::max(0, (screen.height() - size.height()) / 2)};
}

CenteringMove WindowCentering::plan(const WindowPlacement& placement, bool animated)
{
    if (placement.isFullScreen)
        return {.leaveAlone = true};
    const QPoint from = placement.frame.topLeft();
    const QPoint to = centredOrigin(placement.frame.size(), placement.availableScreen);
    return {.restore = placement.isMinimised,
            .raise = !placement.isVisible,
            .from = from,
            .to = to,
            .animate = animated && from != to};
}

bool WindowCentering::isCenterShortcut(const KeyPress& key)
{
    if (!key.control || !key.function || key.option || key.command)
        return false;
    return key.keyCode == keyCodeC || key.charactersIgnoringModifiers.toLower() == QLatin1String("c") ||
           key.characters == QString(QChar(controlC));
}

} // namespace kestrow
