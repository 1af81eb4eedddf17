#pragma once

#include "presentation/VUMeter.h"
#include "state/AppState.h"

#include <QAction>
#include <QMenu>
#include <QObject>
#include <QSystemTrayIcon>

#include <array>

namespace kestrow {

// The companion in the desktop's tray: the live read, Run sweep or a scan, Settings and Quit.
// It stands there only while the setting wants it and the desktop has a tray; its vitals are
// read again each time its menu opens.
class TrayCompanion : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool trayAvailable READ trayAvailable CONSTANT)

public:
    explicit TrayCompanion(AppState& state, QObject* parent = nullptr);

    [[nodiscard]] static bool trayAvailable() { return QSystemTrayIcon::isSystemTrayAvailable(); }
    [[nodiscard]] bool isShown() const { return m_icon.isVisible(); }
    [[nodiscard]] QMenu& menu() { return m_menu; }
    // A meter as a menu line: its label, its lit and dark cells, and the percentage.
    [[nodiscard]] static QString meterLine(const QString& label, const VUMeter& meter);

Q_SIGNALS:
    // The application's window is to come to the front, as for Settings.
    void raiseRequested();
    void centerRequested();

private Q_SLOTS:
    void updateTexts();

private:
    void updateVisibility();

    AppState& m_state;
    QMenu m_menu;
    QSystemTrayIcon m_icon;
    QAction* m_unavailable;
    std::array<QAction*, 3> m_meters{};
    QAction* m_battery;
    QAction* m_action;
};

} // namespace kestrow
