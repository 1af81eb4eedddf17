#include "views/ScreenshotTour.h"

#include "state/AppTab.h"

#include <QCoreApplication>
#include <QDir>
#include <QImage>
#include <QPixmap>
#include <QWidget>

namespace kestrow {

namespace {

// A screen is pictured once nothing has run for this long, and at the latest after the limit.
constexpr int pollMilliseconds = 250;
constexpr int settleMilliseconds = 1000;
constexpr int limitMilliseconds = 120000;

const char* const settingsTabNames[] = {"settings-general", "settings-targets", "settings-safety", "settings-agents",
                                        "settings-exclusions"};

} // namespace

ScreenshotTour::ScreenshotTour(QQuickWindow& window, AppState& state, QString folder, QString prefix, QWidget* trayMenu,
                               QObject* parent)
    : QObject(parent)
    , m_window(window)
    , m_state(state)
    , m_folder(std::move(folder))
    , m_prefix(std::move(prefix))
    , m_trayMenu(trayMenu)
{
    for (const AppTab tab : AppTab::allCases())
        m_steps.push_back({tab.rawValue().toLower(), [this, tab] { m_state.setSelectedTab(tab); }});
    for (int index = 0; index < 5; ++index)
        m_steps.push_back({QLatin1String(settingsTabNames[index]), [this, index] {
                               m_window.property("settingsView").value<QObject*>()->setProperty("selectedTab", index);
                               m_state.setShowingSettingsSheet(true);
                           }});
    m_poll.setInterval(pollMilliseconds);
}

void ScreenshotTour::start()
{
    QDir().mkpath(m_folder);
    m_index = 0;
    next();
}

void ScreenshotTour::next()
{
    if (m_index == m_steps.size()) {
        if (m_trayMenu) {
            m_trayMenu->adjustSize();
            m_trayMenu->grab().save(m_folder + QLatin1Char('/') + m_prefix + QStringLiteral("-tray.png"));
        }
        QCoreApplication::quit();
        return;
    }
    const Step& step = m_steps[m_index++];
    step.prepare();
    saveWhenSettled(step.name);
}

void ScreenshotTour::saveWhenSettled(const QString& name)
{
    m_waited = 0;
    int quiet = 0;
    m_poll.disconnect(this);
    connect(&m_poll, &QTimer::timeout, this, [this, name, quiet]() mutable {
        m_waited += pollMilliseconds;
        quiet = m_state.isIdle() && !m_state.isBusy() ? quiet + pollMilliseconds : 0;
        if (quiet < settleMilliseconds && m_waited < limitMilliseconds)
            return;
        m_poll.stop();
        m_window.grabWindow().save(m_folder + QLatin1Char('/') + m_prefix + QLatin1Char('-') + name +
                                   QStringLiteral(".png"));
        next();
    });
    m_poll.start();
}

} // namespace kestrow
