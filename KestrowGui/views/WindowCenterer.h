#pragma once

#include "presentation/WindowCentering.h"

#include <QObject>
#include <QPointer>
#include <QVariantAnimation>
#include <QWindow>

namespace kestrow {

// Centres the application's front window on its screen: a full-screen window is left alone, a
// minimised one is restored first, and the move eases out over 0.2 seconds unless the window
// already stands in the middle.
class WindowCenterer : public QObject {
    Q_OBJECT

public:
    explicit WindowCenterer(QObject* parent = nullptr);

    // The window to fall back on when no window has the focus.
    Q_INVOKABLE void registerMainWindow(QWindow* window);
    // True where a window was found.
    Q_INVOKABLE bool centerActiveWindow(bool animated = true);
    void center(QWindow* window, bool animated);
    // The focused window, the registered one, then the first visible top-level window that is
    // no popup or tool tip.
    [[nodiscard]] QWindow* resolveTargetWindow() const;
    [[nodiscard]] bool isMoving() const { return m_move.state() == QAbstractAnimation::Running; }

private:
    QPointer<QWindow> m_trackedWindow;
    QPointer<QWindow> m_movingWindow;
    CenteringMove m_plan;
    QVariantAnimation m_move;
};

} // namespace kestrow
