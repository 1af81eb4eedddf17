#include "views/TrayCompanion.h"

#include "presentation/CompanionScreen.h"
#include "settings/AppSettings.h"
#include "views/IconTable.h"
#include "views/StateChanges.h"

#include <QApplication>
#include <QIcon>

namespace kestrow {

namespace {

QIcon icon(const QString& symbol)
{
    return QIcon(IconTable::resourcePath(symbol));
}

} // namespace

TrayCompanion::TrayCompanion(AppState& state, QObject* parent)
    : QObject(parent)
    , m_state(state)
{
    m_icon.setIcon(icon(QStringLiteral("waveform.path.ecg")));
    m_icon.setToolTip(CompanionScreen::title());
    m_icon.setContextMenu(&m_menu);
    connect(&m_icon, &QSystemTrayIcon::activated, this, [this](QSystemTrayIcon::ActivationReason reason) {
        if (reason == QSystemTrayIcon::Trigger)
            Q_EMIT raiseRequested();
    });

    m_menu.addSection(CompanionScreen::title());
    QAction* refresh =
        m_menu.addAction(icon(QStringLiteral("arrow.clockwise")), CompanionScreen::refreshAccessibilityText());
    connect(refresh, &QAction::triggered, &m_state, &AppState::refreshVitals);
    QAction* settings = m_menu.addAction(icon(QStringLiteral("gearshape")), QStringLiteral("Settings..."));
    settings->setToolTip(CompanionScreen::settingsAccessibilityText());
    connect(settings, &QAction::triggered, this, [this] {
        Q_EMIT raiseRequested();
        m_state.openSettings();
    });
    QAction* center = m_menu.addAction(QStringLiteral("Center Window"));
    connect(center, &QAction::triggered, this, &TrayCompanion::centerRequested);

    m_menu.addSection(CompanionScreen::liveReadTitle());
    m_unavailable = m_menu.addAction(CompanionScreen::vitalsUnavailableText());
    for (QAction*& meter : m_meters)
        meter = m_menu.addAction(QString());
    m_battery = m_menu.addAction(QString());
    for (QAction* reading : {m_unavailable, m_meters[0], m_meters[1], m_meters[2], m_battery})
        reading->setEnabled(false);
    m_menu.addSeparator();
    m_action = m_menu.addAction(QString());
    connect(m_action, &QAction::triggered, this, [this] { CompanionScreen::pressAction(m_state); });
    m_menu.addSeparator();
    QAction* quit = m_menu.addAction(CompanionScreen::quitTitle());
    connect(quit, &QAction::triggered, qApp, &QCoreApplication::quit);

    connect(&m_menu, &QMenu::aboutToShow, this, [this] { CompanionScreen::open(m_state); });
    connectEveryChange(m_state, this, metaObject()->method(metaObject()->indexOfSlot("updateTexts()")));
    connect(&m_state.settings(), &AppSettings::changed, this, &TrayCompanion::updateVisibility);
    updateTexts();
    updateVisibility();
}

QString TrayCompanion::meterLine(const QString& label, const VUMeter& meter)
{
    const int lit = meter.litCells();
    return label + QStringLiteral("  ") + QString(lit, QChar(0x25AE)) + QString(meter.cells - lit, QChar(0x25AF)) +
           QStringLiteral("  ") + meter.percentText();
}

void TrayCompanion::updateVisibility()
{
    m_icon.setVisible(trayAvailable() && m_state.settings().showMenuBarExtra());
}

void TrayCompanion::updateTexts()
{
    const std::vector<CompanionScreen::MeterRow> rows = CompanionScreen::meterRows(m_state);
    m_unavailable->setVisible(rows.empty());
    for (std::size_t i = 0; i < m_meters.size(); ++i) {
        m_meters[i]->setVisible(i < rows.size());
        if (i < rows.size())
            m_meters[i]->setText(meterLine(rows[i].label, rows[i].meter));
    }
    const std::optional<CompanionScreen::BatteryRow> battery = CompanionScreen::batteryRow(m_state);
    m_battery->setVisible(battery.has_value());
    if (battery) {
        m_battery->setIcon(icon(battery->symbol));
        m_battery->setText(battery->label + QStringLiteral("  ") + battery->percentText);
        m_battery->setToolTip(battery->accessibilityText);
    }
    m_action->setText(CompanionScreen::actionTitle(m_state));
    m_action->setEnabled(CompanionScreen::actionEnabled(m_state));
}

} // namespace kestrow
