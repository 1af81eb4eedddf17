#include "views/WindowCenterer.h"

#include <QGuiApplication>
#include <QScreen>

namespace kestrow {

namespace {

bool isOrdinaryWindow(const QWindow* window)
{
    if (!window)
        return false;
    const Qt::WindowType type = window->type();
    return type != Qt::Popup && type != Qt::ToolTip && type != Qt::SplashScreen && type != Qt::Desktop;
}

} // namespace

WindowCenterer::WindowCenterer(QObject* parent)
    : QObject(parent)
{
    // The animation runs the progress; the plan eases it along its own curve.
    m_move.setDuration(static_cast<int>(WindowCentering::animationDuration.count()));
    m_move.setStartValue(0.0);
    m_move.setEndValue(1.0);
    connect(&m_move, &QVariantAnimation::valueChanged, this, [this](const QVariant& value) {
        if (m_movingWindow)
            m_movingWindow->setFramePosition(m_plan.originAt(value.toDouble()));
    });
}

void WindowCenterer::registerMainWindow(QWindow* window)
{
    m_trackedWindow = window;
}

bool WindowCenterer::centerActiveWindow(bool animated)
{
    QWindow* window = resolveTargetWindow();
    if (!window)
        return false;
    center(window, animated);
    return true;
}

void WindowCenterer::center(QWindow* window, bool animated)
{
    QScreen* screen = window->screen() ? window->screen() : QGuiApplication::primaryScreen();
    if (!screen)
        return;
    const Qt::WindowStates states = window->windowStates();
    const CenteringMove move = WindowCentering::plan({.frame = window->frameGeometry(),
                                                      .availableScreen = screen->availableGeometry(),
                                                      .isFullScreen = states.testFlag(Qt::WindowFullScreen),
                                                      .isMinimised = states.testFlag(Qt::WindowMinimized),
                                                      .isVisible = window->isVisible()},
                                                     animated);
    if (move.leaveAlone)
        return;
    if (move.restore)
        window->showNormal();
    if (move.raise) {
        window->show();
        window->raise();
        window->requestActivate();
    }
    m_move.stop();
    if (!move.animate) {
        if (move.from != move.to)
            window->setFramePosition(move.to);
        return;
    }
    m_movingWindow = window;
    m_plan = move;
    m_move.start();
}

QWindow* WindowCenterer::resolveTargetWindow() const
{
    if (isOrdinaryWindow(QGuiApplication::focusWindow()))
        return QGuiApplication::focusWindow();
    if (isOrdinaryWindow(m_trackedWindow))
        return m_trackedWindow;
    for (QWindow* window : QGuiApplication::topLevelWindows())
        if (window->isVisible() && isOrdinaryWindow(window))
            return window;
    return nullptr;
}

} // namespace kestrow
