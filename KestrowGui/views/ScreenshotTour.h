#pragma once

#include "state/AppState.h"
#include "views/CityView.h"
#include "views/SettingsView.h"

#include <QElapsedTimer>
#include <QObject>
#include <QQuickWindow>
#include <QString>
#include <QTimer>

#include <functional>
#include <vector>

class QWidget;

namespace kestrow {

// Walks the window through every screen and Settings tab once the launch's work is done,
// saving a picture of each into a folder, then quits; last, the city stage alone in each style
// playing an idle moment, a scan, a Sweep and its victory. For the documentation's pictures.
class ScreenshotTour : public QObject {
    Q_OBJECT

public:
    // `prefix` starts every file name; `trayMenu` is pictured too where given.
    ScreenshotTour(QQuickWindow& window, AppState& state, SettingsView& settings, CityView& city, QString folder,
                   QString prefix, QWidget* trayMenu, QObject* parent = nullptr);

    void start();

private:
    struct Step {
        QString name;
        std::function<void()> prepare;
        // Where given, the picture is taken once this holds, and of the city stage only.
        std::function<bool()> stageReady = {};
    };

    void addCitySteps();
    void next();
    // Once the state has been idle a moment.
    [[nodiscard]] std::function<bool()> settled() const;
    // Pictures the window, or its city stage alone, once `ready` holds or the limit has passed.
    void saveWhen(const QString& name, std::function<bool()> ready, bool stageOnly);

    QQuickWindow& m_window;
    AppState& m_state;
    SettingsView& m_settings;
    CityView& m_city;
    QString m_folder;
    QString m_prefix;
    QWidget* m_trayMenu;
    std::vector<Step> m_steps;
    std::size_t m_index = 0;
    QTimer m_poll;
    int m_waited = 0;
    QElapsedTimer m_stepClock;
};

} // namespace kestrow
