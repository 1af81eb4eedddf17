#include "views/TrayCompanion.h"

#include "settings/AppSettings.h"

#include <QApplication>
#include <QIcon>

namespace kestrow {

TrayCompanion::TrayCompanion(PulseView& pulse, AppSettings& settings, QObject* parent)
    : QObject(parent)
    , m_pulse(pulse)
    , m_settings(settings)
{
    m_icon.setIcon(QIcon(QStringLiteral(":/Kestrow/Gui/icons/computer-symbolic.svg")));
    m_icon.setToolTip(QStringLiteral("Kestrow"));
    m_icon.setContextMenu(&m_menu);

    m_menu.addSection(QStringLiteral("Kestrow"));
    QAction* refresh = m_menu.addAction(QStringLiteral("Refresh vitals"));
    connect(refresh, &QAction::triggered, &pulse, &PulseView::refreshVitals);
    QAction* openSettings = m_menu.addAction(QStringLiteral("Settings..."));
    connect(openSettings, &QAction::triggered, this, [this] {
        Q_EMIT raiseRequested();
        m_pulse.openSettings();
    });
    m_menu.addSection(QStringLiteral("Live read"));
    m_cpu = m_menu.addAction(QString());
    m_memory = m_menu.addAction(QString());
    m_freeSpace = m_menu.addAction(QString());
    m_battery = m_menu.addAction(QString());
    for (QAction* reading : {m_cpu, m_memory, m_freeSpace, m_battery})
        reading->setEnabled(false);
    m_menu.addSeparator();
    m_run = m_menu.addAction(QString());
    connect(m_run, &QAction::triggered, &pulse, &PulseView::pressMainButton);
    m_menu.addSeparator();
    QAction* quit = m_menu.addAction(QStringLiteral("Quit Kestrow"));
    connect(quit, &QAction::triggered, qApp, &QCoreApplication::quit);

    connect(&m_menu, &QMenu::aboutToShow, &pulse, &PulseView::refreshVitals);
    connect(&pulse, &PulseView::changed, this, &TrayCompanion::updateTexts);
    connect(&settings, &AppSettings::changed, this, &TrayCompanion::updateVisibility);
    updateTexts();
    updateVisibility();
}

void TrayCompanion::updateVisibility()
{
    m_icon.setVisible(trayAvailable() && m_settings.showMenuBarExtra());
}

void TrayCompanion::updateTexts()
{
    m_cpu->setText(QStringLiteral("CPU  ") + m_pulse.cpuMeter().value(QStringLiteral("text")).toString());
    m_memory->setText(QStringLiteral("MEMORY  ") + m_pulse.memoryMeter().value(QStringLiteral("text")).toString());
    m_freeSpace->setText(QStringLiteral("Free space  ") + m_pulse.freeSpaceText());
    const QVariantMap battery = m_pulse.batteryMeter();
    m_battery->setVisible(battery.value(QStringLiteral("present")).toBool());
    m_battery->setText(QStringLiteral("Battery  ") + battery.value(QStringLiteral("text")).toString() +
                       (battery.value(QStringLiteral("charging")).toBool() ? QStringLiteral(", charging") : QString()));
    if (m_pulse.isCleaning())
        m_run->setText(QStringLiteral("Sweeping"));
    else
        m_run->setText(m_pulse.canRunSweep() ? QStringLiteral("Run sweep") : m_pulse.mainButtonTitle());
    m_run->setEnabled(!m_pulse.isBusy());
}

} // namespace kestrow
