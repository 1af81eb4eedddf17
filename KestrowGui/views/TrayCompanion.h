#pragma once

#include "views/PulseView.h"

#include <QAction>
#include <QMenu>
#include <QObject>
#include <QSystemTrayIcon>

namespace kestrow {

class AppSettings;

// The companion in the desktop's tray: the live read, Run sweep or a scan, Settings and Quit.
// It stands there only while the setting wants it and the desktop has a tray; its vitals are
// read again each time its menu opens.
class TrayCompanion : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool trayAvailable READ trayAvailable CONSTANT)

public:
    TrayCompanion(PulseView& pulse, AppSettings& settings, QObject* parent = nullptr);

    [[nodiscard]] static bool trayAvailable() { return QSystemTrayIcon::isSystemTrayAvailable(); }
    [[nodiscard]] bool isShown() const { return m_icon.isVisible(); }
    [[nodiscard]] QMenu& menu() { return m_menu; }

Q_SIGNALS:
    // The application's window is to come to the front, as for Settings.
    void raiseRequested();

private:
    void updateVisibility();
    void updateTexts();

    PulseView& m_pulse;
    AppSettings& m_settings;
    QMenu m_menu;
    QSystemTrayIcon m_icon;
    QAction* m_cpu;
    QAction* m_memory;
    QAction* m_freeSpace;
    QAction* m_battery;
    QAction* m_run;
};

} // namespace kestrow
