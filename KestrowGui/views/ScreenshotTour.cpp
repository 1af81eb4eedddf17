#include "views/ScreenshotTour.h"

#include "settings/AppSettings.h"
#include "state/AppTab.h"
#include "views/CityView.h"

#include <QCoreApplication>
#include <QDir>
#include <QImage>
#include <QPixmap>
#include <QQuickItem>
#include <QWidget>

namespace kestrow {

namespace {

// A screen is pictured once nothing has run for this long, and at the latest after the limit.
constexpr int pollMilliseconds = 250;
constexpr int settleMilliseconds = 1000;
constexpr int limitMilliseconds = 120000;

// A scan is pictured while its beam turns, a Sweep while the hauler carries its first crate.
constexpr int scanMilliseconds = 1500;
constexpr int sweepMilliseconds = 2600;
constexpr int stillMilliseconds = 1000;

const char* const settingsTabNames[] = {"settings-general", "settings-targets", "settings-safety", "settings-agents",
                                        "settings-exclusions"};

} // namespace

ScreenshotTour::ScreenshotTour(QQuickWindow& window, AppState& state, SettingsView& settings, CityView& city,
                               QString folder, QString prefix, QWidget* trayMenu, QObject* parent)
    : QObject(parent)
    , m_window(window)
    , m_state(state)
    , m_settings(settings)
    , m_city(city)
    , m_folder(std::move(folder))
    , m_prefix(std::move(prefix))
    , m_trayMenu(trayMenu)
{
    for (const AppTab tab : AppTab::allCases())
        m_steps.push_back({tab.rawValue().toLower(), [this, tab] { m_state.setSelectedTab(tab); }});
    for (int index = 0; index < static_cast<int>(std::size(settingsTabNames)); ++index)
        m_steps.push_back({QLatin1String(settingsTabNames[index]), [this, index] {
                               m_settings.setSelectedTab(index);
                               m_state.setShowingSettingsSheet(true);
                           }});
    addCitySteps();
    m_poll.setInterval(pollMilliseconds);
}

void ScreenshotTour::addCitySteps()
{
    CityView* city = &m_city;
    DiskCitySceneController* controller = city->controller();
    const QString storedStyle = m_state.settings().dioramaStyleRaw();
    const auto play = [this, city, controller](bool scanning, bool cleaning, bool cleaned) {
        DiskCityModel model = city->model();
        model.isScanning = model.isDiskScanning = scanning;
        model.isCleaning = cleaning;
        model.hasCleaned = cleaned;
        controller->update(model);
        m_stepClock.start();
    };
    const auto after = [this](int milliseconds) {
        return [this, milliseconds] { return m_stepClock.elapsed() >= milliseconds; };
    };
    for (const DioramaStyle style : DioramaStyle::allCases()) {
        const QString prefix = QStringLiteral("city-") + style.rawValue() + QLatin1Char('-');
        const bool acts = style == DioramaStyle::classicCity;
        m_steps.push_back({prefix + QStringLiteral("idle"),
                           [this, play, style] {
                               m_state.setShowingSettingsSheet(false);
                               m_state.setSelectedTab(AppTab::pulse);
                               m_state.settings().setDioramaStyle(style);
                               play(false, false, false);
                           },
                           [controller, after] { return !controller->reportedBusy() && after(stillMilliseconds)(); }});
        m_steps.push_back(
            {prefix + QStringLiteral("scanning"), [play] { play(true, false, false); }, after(scanMilliseconds)});
        m_steps.push_back(
            {prefix + QStringLiteral("sweeping"), [play] { play(false, true, false); }, after(sweepMilliseconds)});
        m_steps.push_back({prefix + QStringLiteral("victory"), [play] { play(false, false, true); },
                           [controller, after, acts] {
                               return acts ? controller->isCelebrating() && after(stillMilliseconds)()
                                           : after(stillMilliseconds)();
                           }});
    }
    // The stage goes back to the application's own model and style.
    m_steps.push_back({QString(), [this, city, controller, storedStyle] {
                           m_state.settings().setDioramaStyleRaw(storedStyle);
                           controller->update(city->model());
                       }});
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
    if (step.name.isEmpty())
        next();
    else if (step.stageReady)
        saveWhen(step.name, step.stageReady, true);
    else
        saveWhen(step.name, settled(), false);
}

std::function<bool()> ScreenshotTour::settled() const
{
    return [this, quiet = 0]() mutable {
        quiet = m_state.isIdle() && !m_state.isBusy() ? quiet + pollMilliseconds : 0;
        return quiet >= settleMilliseconds;
    };
}

void ScreenshotTour::saveWhen(const QString& name, std::function<bool()> ready, bool stageOnly)
{
    m_waited = 0;
    m_poll.disconnect(this);
    connect(&m_poll, &QTimer::timeout, this, [this, name, ready = std::move(ready), stageOnly]() mutable {
        m_waited += pollMilliseconds;
        if (!ready() && m_waited < limitMilliseconds)
            return;
        m_poll.stop();
        QImage picture = m_window.grabWindow();
        if (const auto* stage = m_window.findChild<QQuickItem*>(QStringLiteral("cityStage")); stage && stageOnly)
            picture = picture.copy(stage->mapRectToScene(QRectF(0, 0, stage->width(), stage->height())).toRect());
        picture.save(m_folder + QLatin1Char('/') + m_prefix + QLatin1Char('-') + name + QStringLiteral(".png"));
        next();
    });
    m_poll.start();
}

} // namespace kestrow
