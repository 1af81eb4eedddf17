#include "AppHarness.h"

#include "presentation/PlatformWords.h"
#include "views/TrayCompanion.h"

#include <QSignalSpy>

#include <gtest/gtest.h>

namespace kestrow {
namespace {

QStringList shownTexts(const QMenu& menu)
{
    QStringList texts;
    for (const QAction* action : menu.actions())
        if (action->isVisible() && !action->isSeparator())
            texts.append(action->text());
    return texts;
}

QAction* actionTitled(const QMenu& menu, const QString& title)
{
    for (QAction* action : menu.actions())
        if (action->isVisible() && action->text() == title)
            return action;
    return nullptr;
}

TEST(TrayCompanion, TheMenuReadsTheStateAndItsRowActsOnIt)
{
    test::AppHarness harness;
    TrayCompanion tray(*harness.state);
    QMenu& menu = tray.menu();

    // Opening the menu is what reads the vitals again.
    QSignalSpy vitals(harness.state.get(), &AppState::vitalsChanged);
    Q_EMIT menu.aboutToShow();
    test::pumpUntil([&] { return !vitals.isEmpty(); });
    harness.settle();
    const QStringList texts = shownTexts(menu);
    if (harness.state->vitals()) {
        EXPECT_FALSE(texts.contains(QStringLiteral("Vitals unavailable.")));
        EXPECT_TRUE(std::any_of(texts.begin(), texts.end(),
                                [](const QString& text) { return text.startsWith(QLatin1String("Free space  ")); }));
    } else {
        EXPECT_TRUE(texts.contains(QStringLiteral("Vitals unavailable.")));
    }
    EXPECT_EQ(texts.last(), QStringLiteral("Quit Kestrow"));

    // With no scan yet the row scans, and while it scans it can't be pressed again.
    QAction* scan = actionTitled(menu, PlatformWords::current().scanComputer);
    ASSERT_NE(scan, nullptr);
    ASSERT_TRUE(scan->isEnabled());
    scan->trigger();
    EXPECT_TRUE(harness.state->isScanning());
    EXPECT_FALSE(scan->isEnabled());
    harness.settle();
    EXPECT_TRUE(scan->isEnabled());

    // The setting takes the companion away at once; without a tray it never shows.
    harness.settings.setShowMenuBarExtra(false);
    EXPECT_FALSE(tray.isShown());
    harness.settings.setShowMenuBarExtra(true);
    EXPECT_EQ(tray.isShown(), TrayCompanion::trayAvailable());
}

TEST(TrayCompanion, AMeterLineLightsItsShareOfTheCells)
{
    const QString line = TrayCompanion::meterLine(QStringLiteral("CPU"), VUMeter{.percent = 0.5, .cells = 20});
    EXPECT_EQ(line.count(QChar(0x25AE)), 10);
    EXPECT_EQ(line.count(QChar(0x25AF)), 10);
    EXPECT_TRUE(line.startsWith(QLatin1String("CPU  ")));
    EXPECT_TRUE(line.endsWith(QLatin1String("  50%")));
}

} // namespace
} // namespace kestrow
