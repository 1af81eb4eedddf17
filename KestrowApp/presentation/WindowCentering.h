#pragma once

#include <QEasingCurve>
#include <QPoint>
#include <QRect>
#include <QString>

#include <chrono>

namespace kestrow {

// Where a window stands and in what state, as the windowing system tells it.
struct WindowPlacement {
    QRect frame;           // the window's frame, in screen coordinates
    QRect availableScreen; // the usable area of the screen the window is on
    bool isFullScreen = false;
    bool isMinimised = false;
    bool isVisible = true;
};

// What to do to centre a window: the GUI carries it out step by step.
struct CenteringMove {
    bool leaveAlone = false; // full screen: nothing else applies
    bool restore = false;    // bring a minimised window back first
    bool raise = false;      // make a hidden window key and bring it to the front
    QPoint from;
    QPoint to;
    bool animate = false; // ease from `from` to `to`; otherwise jump there

    // The origin at `progress` (0 to 1) of the animation along the easing curve.
    [[nodiscard]] QPoint originAt(double progress) const;
};

// A key press as the keyboard reports it, with the modifiers the centre shortcut looks at.
struct KeyPress {
    bool control = false;
    bool option = false;
    bool command = false;
    bool function = false;
    bool shift = false;
    int keyCode = -1;
    QString charactersIgnoringModifiers;
    QString characters;
};

// The decisions of centring the front window on its screen, free of any window object.
class WindowCentering {
public:
    static constexpr std::chrono::milliseconds animationDuration{200};

    // The ease-out timing curve of the move.
    [[nodiscard]] static QEasingCurve easing();
    // The origin that puts a window of `size` in the middle of `screen`; a window larger than
    // the screen keeps its top left corner on it.
    [[nodiscard]] static QPoint centredOrigin(QSize size, const QRect& screen);
    [[nodiscard]] static CenteringMove plan(const WindowPlacement& placement, bool animated);
    // Control and Function with C (Shift allowed, Option and Command not).
    [[nodiscard]] static bool isCenterShortcut(const KeyPress& key);
};

} // namespace kestrow
