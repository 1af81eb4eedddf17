#include "AppHarness.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QSettings>
#include <QThread>

#include <gtest/gtest.h>

namespace kestrow::test {

void pumpUntil(const std::function<bool()>& done)
{
    QElapsedTimer clock;
    clock.start();
    while (!done() && clock.elapsed() < 30000) {
        QCoreApplication::processEvents();
        QThread::msleep(2);
    }
    ASSERT_TRUE(done());
}

AppHarness::AppHarness(const AppHarnessSetup& setup)
    : settings(std::make_unique<QSettings>(home.path(QStringLiteral("settings.ini")), QSettings::IniFormat))
{
    if (setup.settings)
        setup.settings(settings);
    AppEnvironment environment{.homeURL = home.path(),
                               .settings = &settings,
                               .applicationsURLs = QStringList{home.makeDirectory(QStringLiteral("apps"))},
                               .softwareRoot = SoftwareRoot::below(home.makeDirectory(QStringLiteral("root")))};
    if (setup.adjust)
        setup.adjust(environment);
    state = std::make_unique<AppState>(setup.autoScan, std::move(environment));
    QObject::connect(state.get(), &AppState::statusMessageChanged, [this] { messages.append(state->statusMessage()); });
}

void AppHarness::settle() const
{
    QElapsedTimer clock;
    clock.start();
    do {
        QCoreApplication::processEvents(QEventLoop::AllEvents);
        QThread::msleep(2);
    } while ((!state->isIdle() || clock.elapsed() < 20) && clock.elapsed() < 60000);
    ASSERT_TRUE(state->isIdle());
}

} // namespace kestrow::test
