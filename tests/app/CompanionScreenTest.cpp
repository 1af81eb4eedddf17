#include "presentation/CompanionScreen.h"
#include "presentation/PlatformWords.h"

#include "AppHarness.h"

#include "platform/LinuxSystemSource.h"

#include <QSignalSpy>

#include <gtest/gtest.h>

using namespace kestrow;
using kestrow::test::AppHarness;

TEST(CompanionScreen, OpeningReadsTheVitalsAgainAndTheBatteryRowFollowsThem)
{
    AppHarness harness({.adjust = [](AppEnvironment& environment) {
        environment.systemSource =
            std::make_shared<LinuxSystemSource>(environment.homeURL + QStringLiteral("/machine"));
    }});
    AppState& state = *harness.state;
    ASSERT_TRUE(state.vitals());
    EXPECT_FALSE(CompanionScreen::batteryRow(state));

    const QString battery = QStringLiteral("machine/sys/class/power_supply/BAT0/");
    harness.home.writeFile(battery + QStringLiteral("type"), QByteArray("Battery\n"));
    harness.home.writeFile(battery + QStringLiteral("status"), QByteArray("Charging\n"));
    harness.home.writeFile(battery + QStringLiteral("capacity"), QByteArray("42\n"));
    QSignalSpy vitals(&state, &AppState::vitalsChanged);
    CompanionScreen::open(state);
    EXPECT_EQ(vitals.count(), 1);
    const std::optional<CompanionScreen::BatteryRow> row = CompanionScreen::batteryRow(state);
    ASSERT_TRUE(row);
    EXPECT_EQ(row->symbol, QStringLiteral("battery.100.bolt"));
    EXPECT_EQ(row->percentText, QStringLiteral("42%"));
    EXPECT_EQ(row->accessibilityText, QStringLiteral("Battery 42 percent, charging"));

    harness.home.writeFile(battery + QStringLiteral("status"), QByteArray("Discharging\n"));
    CompanionScreen::open(state);
    EXPECT_EQ(CompanionScreen::batteryRow(state)->accessibilityText, QStringLiteral("Battery 42 percent"));
    EXPECT_EQ(CompanionScreen::batteryRow(state)->symbol, QStringLiteral("battery.100"));

    QStringList labels;
    for (const CompanionScreen::MeterRow& meter : CompanionScreen::meterRows(state))
        labels.append(meter.label);
    EXPECT_EQ(labels, (QStringList{QStringLiteral("CPU"), QStringLiteral("MEMORY"), QStringLiteral("Free space")}));
}

TEST(CompanionScreen, TheActionRowSweepsWhatAScanFoundAndWaitsWhileAnythingIsBusy)
{
    AppHarness harness;
    AppState& state = *harness.state;
    EXPECT_EQ(CompanionScreen::action(state), CompanionScreen::Action::scan);
    EXPECT_EQ(CompanionScreen::actionTitle(state), PlatformWords::current().scanComputer);

    state.setIsDioramaBusy(true);
    EXPECT_FALSE(CompanionScreen::actionEnabled(state));
    CompanionScreen::pressAction(state);
    EXPECT_FALSE(state.isScanning()) << "a disabled button does nothing";
    state.setIsDioramaBusy(false);

    harness.home.writeFile(QStringLiteral(".cache/uv/wheels-v1/pkg.whl"), 20000);
    CompanionScreen::pressAction(state);
    EXPECT_TRUE(state.isScanning());
    harness.settle();
    EXPECT_EQ(CompanionScreen::action(state), CompanionScreen::Action::runSweep);
    EXPECT_EQ(CompanionScreen::actionTitle(state), QStringLiteral("Run sweep"));

    CompanionScreen::pressAction(state);
    EXPECT_EQ(CompanionScreen::action(state), CompanionScreen::Action::sweeping);
    EXPECT_EQ(CompanionScreen::actionTitle(state), QStringLiteral("Sweeping"));
    EXPECT_FALSE(CompanionScreen::actionEnabled(state));
    harness.settle();
    EXPECT_EQ(CompanionScreen::action(state), CompanionScreen::Action::scan) << "nothing safe is left";
    EXPECT_TRUE(CompanionScreen::actionEnabled(state));
}
