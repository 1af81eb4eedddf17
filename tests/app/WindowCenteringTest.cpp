#include "presentation/WindowCentering.h"

#include <gtest/gtest.h>

using namespace kestrow;

namespace {

const QRect screen(0, 25, 1440, 875);

WindowPlacement at(QPoint origin)
{
    return {.frame = QRect(origin, QSize(800, 500)), .availableScreen = screen};
}

} // namespace

TEST(WindowCentering, AMoveEasesOutToTheMiddleAndOnlyWhereTheWindowMoves)
{
    const CenteringMove move = WindowCentering::plan(at({10, 40}), true);
    EXPECT_EQ(move.to, QPoint(320, 212));
    EXPECT_TRUE(move.animate);
    EXPECT_FALSE(move.leaveAlone || move.restore || move.raise);
    EXPECT_EQ(move.originAt(0), move.from);
    EXPECT_EQ(move.originAt(1), move.to);
    // Ease-out: most of the way is behind it at half time.
    EXPECT_GT(move.originAt(0.5).x(), (move.from.x() + move.to.x()) / 2 + 30);
    EXPECT_EQ(WindowCentering::animationDuration.count(), 200);

    EXPECT_FALSE(WindowCentering::plan(at({320, 212}), true).animate) << "already centred";
    EXPECT_FALSE(WindowCentering::plan(at({10, 40}), false).animate);

    // Larger than the screen: its corner stays on it.
    const WindowPlacement huge{.frame = QRect(-300, -300, 2000, 1000), .availableScreen = screen};
    EXPECT_EQ(WindowCentering::plan(huge, true).to, QPoint(0, 25));
}

TEST(WindowCentering, FullScreenIsLeftAloneAMinimisedWindowComesBackAndIsCentred)
{
    WindowPlacement full = at({0, 0});
    full.isFullScreen = true;
    full.isMinimised = true;
    const CenteringMove untouched = WindowCentering::plan(full, true);
    EXPECT_TRUE(untouched.leaveAlone);
    EXPECT_FALSE(untouched.restore || untouched.animate);

    WindowPlacement minimised = at({10, 40});
    minimised.isMinimised = true;
    minimised.isVisible = false;
    const CenteringMove restored = WindowCentering::plan(minimised, true);
    EXPECT_TRUE(restored.restore);
    EXPECT_TRUE(restored.raise);
    EXPECT_EQ(restored.to, QPoint(320, 212));
}

TEST(WindowCentering, TheShortcutIsControlFunctionCWithShiftAllowed)
{
    const KeyPress shortcut{.control = true, .function = true, .keyCode = 8};
    EXPECT_TRUE(WindowCentering::isCenterShortcut(shortcut));
    KeyPress shifted = shortcut;
    shifted.shift = true;
    EXPECT_TRUE(WindowCentering::isCenterShortcut(shifted));
    KeyPress command = shortcut;
    command.command = true;
    EXPECT_FALSE(WindowCentering::isCenterShortcut(command));
    EXPECT_FALSE(WindowCentering::isCenterShortcut({.control = true, .keyCode = 8}));

    EXPECT_TRUE(WindowCentering::isCenterShortcut(
        {.control = true, .function = true, .charactersIgnoringModifiers = QStringLiteral("C")}));
    EXPECT_TRUE(
        WindowCentering::isCenterShortcut({.control = true, .function = true, .characters = QString(QChar(3))}));
    EXPECT_FALSE(WindowCentering::isCenterShortcut(
        {.control = true, .function = true, .keyCode = 9, .charactersIgnoringModifiers = QStringLiteral("v")}));
}
