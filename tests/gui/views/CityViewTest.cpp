#include "AppHarness.h"

#include "settings/AppTheme.h"
#include "state/AppTab.h"
#include "storage/StorageCategory.h"
#include "views/CityView.h"
#include "views/IconTable.h"

#include <QFile>
#include <QSignalSpy>

#include <gtest/gtest.h>

namespace kestrow {
namespace {

TEST(CityView, ChipsFollowTheStateAndOpenTheirDistricts)
{
    test::AppHarness harness;
    CityView city(*harness.state);
    const QVariantList chips = city.chips();
    ASSERT_EQ(chips.size(), static_cast<qsizetype>(harness.state->cityModel().chips.size()));
    for (const QVariant& chip : chips) {
        const QVariantMap map = chip.toMap();
        EXPECT_TRUE(
            QStringList({QStringLiteral("accentOrange"), QStringLiteral("safeTeal"), QStringLiteral("askAmber")})
                .contains(map.value(QStringLiteral("tintName")).toString()));
        EXPECT_GE(map.value(QStringLiteral("x")).toDouble(), 0.0);
        EXPECT_LE(map.value(QStringLiteral("y")).toDouble(), 1.0);
    }

    city.selectDistrict(2);
    EXPECT_EQ(harness.state->selectedTab(), AppTab::uninstall);
    city.selectDistrict(5);
    EXPECT_EQ(harness.state->selectedTab(), AppTab::sweep);

    // A scan changes the model, and the stage hears of it.
    QSignalSpy changes(&city, &CityView::modelChanged);
    harness.state->runSmartScan();
    EXPECT_FALSE(changes.isEmpty());
    EXPECT_TRUE(city.model().isScanning);
    harness.settle();
    EXPECT_FALSE(city.model().isScanning);

    harness.settings.setDioramaStyle(DioramaStyle::freightTerminal);
    EXPECT_EQ(city.style(), QStringLiteral("freightTerminal"));
    harness.settings.setReduceDioramaMotion(true);
    EXPECT_TRUE(city.controller()->reduceMotion());
}

// Answers the desktop's animation setting as told, or cannot start at all.
class AnimationSetting final : public CommandRunner {
public:
    explicit AnimationSetting(std::optional<CommandResult> answer)
        : m_answer(std::move(answer))
    {
    }
    CommandResult runWithStatus(const ChildCommand& command) const override
    {
        if (!m_answer)
            throw ProcessLaunchError(command.executable, QStringLiteral("No such file or directory"));
        return *m_answer;
    }

private:
    std::optional<CommandResult> m_answer;
};

TEST(CityView, TheDesktopAsksForLessMotionOnlyByTurningItsAnimationsOff)
{
    EXPECT_TRUE(CityView::systemReducesMotion(AnimationSetting(CommandResult{.standardOutput = "false\n"})));
    EXPECT_FALSE(CityView::systemReducesMotion(AnimationSetting(CommandResult{.standardOutput = "true\n"})));
    EXPECT_FALSE(
        CityView::systemReducesMotion(AnimationSetting(CommandResult{.exitStatus = 1, .standardOutput = "false\n"})));
    EXPECT_FALSE(CityView::systemReducesMotion(AnimationSetting(std::nullopt)));

    // Wanted by the desktop, less motion holds whatever the setting says.
    test::AppHarness harness;
    CityView city(*harness.state, AnimationSetting(CommandResult{.standardOutput = "false\n"}));
    EXPECT_TRUE(city.controller()->reduceMotion());
    harness.settings.setReduceDioramaMotion(false);
    EXPECT_TRUE(city.controller()->reduceMotion());
}

TEST(IconTable, EverySymbolTheScreensNameHasAnIcon)
{
    QStringList symbols;
    for (const StorageCategory category : StorageCategory::allCases())
        symbols.append(category.iconName());
    for (const AppTab tab : AppTab::allCases())
        symbols.append(tab.iconName());
    for (const AppTheme theme : AppTheme::allCases())
        symbols.append(theme.iconName());
    for (const DioramaStyle style : DioramaStyle::allCases())
        symbols.append(style.iconName());
    symbols << QStringLiteral("battery.100") << QStringLiteral("battery.100.bolt");
    for (const QString& symbol : symbols) {
        EXPECT_TRUE(IconTable::knows(symbol)) << symbol.toStdString();
        EXPECT_TRUE(QFile::exists(IconTable::resourcePath(symbol))) << symbol.toStdString();
    }
}

} // namespace
} // namespace kestrow
