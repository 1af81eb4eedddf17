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
    m_move.setDuration(moveMilliseconds);
    m_move.setEasingCurve(QEasingCurve::OutCubic);
    connect(&m_move, &QVariantAnimation::valueChanged, this, [this](const QVariant& value) {
        if (m_movingWindow)
            m_movingWindow->setFramePosition(value.toPoint());
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
    if (window->windowStates() & Qt::WindowFullScreen)
        return;
    if (window->windowStates() & Qt::WindowMinimized)
        window->showNormal();
    if (!window->isVisible()) {
        window->show();
        window->requestActivate();
    }
    QScreen* screen = window->screen() ? window->screen() : QGuiApplication::primaryScreen();
    if (!screen)
        return;
    const QRect frame = window->frameGeometry();
    QRect target = frame;
    target.moveCenter(screen->availableGeometry().center());
    if (target.topLeft() == frame.topLeft())
        return;
    m_move.stop();
    if (!animated) {
        window->setFramePosition(target.topLeft());
        return;
    }
    m_movingWindow = window;
    m_move.setStartValue(frame.topLeft());
    m_move.setEndValue(target.topLeft());
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
