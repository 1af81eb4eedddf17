#include "AppHarness.h"

#include "views/WindowCenterer.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWindow>

#include <gtest/gtest.h>

namespace kestrow {
namespace {

QPoint centre(const QWindow& window)
{
    return WindowCentering::centredOrigin(window.frameGeometry().size(), window.screen()->availableGeometry());
}

TEST(WindowCenterer, MovesToTheMiddleEasingOnlyWhenItHasToAndLeavesFullScreenAlone)
{
    QWindow window;
    window.setGeometry(5, 7, 320, 200);
    window.show();
    WindowCenterer centerer;
    centerer.registerMainWindow(&window);

    ASSERT_TRUE(centerer.centerActiveWindow(true));
    EXPECT_TRUE(centerer.isMoving());
    test::pumpUntil([&] { return !centerer.isMoving(); });
    EXPECT_EQ(window.framePosition(), centre(window));

    // Already in the middle: nothing to animate.
    centerer.center(&window, true);
    EXPECT_FALSE(centerer.isMoving());

    window.setFramePosition({1, 1});
    centerer.center(&window, false);
    EXPECT_FALSE(centerer.isMoving());
    EXPECT_EQ(window.framePosition(), centre(window));

    window.showFullScreen();
    const QRect fullScreen = window.frameGeometry();
    centerer.center(&window, false);
    EXPECT_EQ(window.frameGeometry(), fullScreen);
}

// Where it then stands is the windowing system's to tell: the offscreen one gives a restored
// window a new size of its own.
TEST(WindowCenterer, AMinimisedWindowComesBack)
{
    QWindow window;
    window.setGeometry(5, 7, 320, 200);
    window.showMinimized();
    WindowCenterer centerer;
    centerer.center(&window, false);
    EXPECT_FALSE(window.windowStates() & Qt::WindowMinimized);
    EXPECT_TRUE(window.isVisible());
}

} // namespace
} // namespace kestrow
