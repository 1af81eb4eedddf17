#pragma once

#include "state/AppState.h"

#include <QObject>
#include <QQuickWindow>
#include <QString>
#include <QTimer>

#include <functional>
#include <vector>

class QWidget;

namespace kestrow {

// Walks the window through every screen and Settings tab once the launch's work is done,
// saving a picture of each into a folder, then quits. For the documentation's pictures.
class ScreenshotTour : public QObject {
    Q_OBJECT

public:
    // `prefix` starts every file name; `trayMenu` is pictured too where given.
    ScreenshotTour(QQuickWindow& window, AppState& state, QString folder, QString prefix, QWidget* trayMenu,
                   QObject* parent = nullptr);

    void start();

private:
    struct Step {
        QString name;
        std::function<void()> prepare;
    };

    void next();
    void saveWhenSettled(const QString& name);

    QQuickWindow& m_window;
    AppState& m_state;
    QString m_folder;
    QString m_prefix;
    QWidget* m_trayMenu;
    std::vector<Step> m_steps;
    std::size_t m_index = 0;
    QTimer m_poll;
    int m_waited = 0;
};

} // namespace kestrow
