#include "AppHarness.h"
#include "SyntheticApps.h"

#include "cleanup/AuditLogger.h"

#include <QFile>
#include <QSignalSpy>

#include <gtest/gtest.h>

using namespace kestrow;
using namespace kestrow::test;

namespace {

// A program of the user's own in the harness's application folder, with settings of its own.
QString writeProgram(const TestHome& home)
{
    home.writeFile(QStringLiteral(".config/Acme/settings.json"), 3000);
    return home.writeFile(QStringLiteral("apps/Acme-1.0-x86_64.AppImage"),
                          SyntheticApps::elf(SyntheticApps::elfX86_64) + QByteArray(20000, 'a'));
}

InstalledApp installed(const AppState& state, const QString& bundlePath)
{
    for (const InstalledApp& app : state.installedApps())
        if (app.bundlePath == bundlePath)
            return app;
    ADD_FAILURE() << "not in the inventory: " << bundlePath.toStdString();
    return {};
}

} // namespace

TEST(AppRemovalFlows, AnUninstallHoldsTheFlagThroughTheReloadAndKeepsItsOwnMessage)
{
    AppHarness harness;
    const QString program = writeProgram(harness.home);
    harness.state->loadApps();
    EXPECT_TRUE(harness.state->isLoadingApps());
    harness.settle();
    const InstalledApp app = installed(*harness.state, program);
    ASSERT_FALSE(app.displayName.isEmpty());

    QSignalSpy loading(harness.state.get(), &AppState::isLoadingAppsChanged);
    QSignalSpy inventory(harness.state.get(), &AppState::installedAppsChanged);
    QSignalSpy vitals(harness.state.get(), &AppState::vitalsChanged);
    harness.messages.clear();
    harness.state->uninstall(app);
    harness.state->uninstall(app);
    harness.settle();

    EXPECT_EQ(loading.count(), 2) << "set once, cleared once, by the reload at its end";
    EXPECT_EQ(inventory.count(), 1);
    EXPECT_EQ(vitals.count(), 1);
    ASSERT_EQ(harness.messages.size(), 2) << harness.messages.join(QLatin1Char('|')).toStdString();
    EXPECT_EQ(harness.messages[0], QStringLiteral("Removing ") + app.displayName + QStringLiteral("…"));
    EXPECT_TRUE(harness.messages[1].startsWith(QStringLiteral("Removed ") + app.displayName + QStringLiteral(". ")));
    EXPECT_TRUE(harness.messages[1].endsWith(QStringLiteral(" back in your hands.")));
    EXPECT_FALSE(QFile::exists(program));
    for (const InstalledApp& left : harness.state->installedApps())
        EXPECT_NE(left.bundlePath, program);
    AuditLogger log({.homeURL = harness.home.path()});
    ASSERT_EQ(log.readEntries().size(), 1u);
    EXPECT_EQ(log.readEntries().front().client, QStringLiteral("uninstaller"));
}

TEST(AppRemovalFlows, AFailedUninstallLeavesTheInventoryAndReloadsNothing)
{
    AppHarness harness;
    const QString program = writeProgram(harness.home);
    harness.state->loadApps();
    harness.settle();
    InstalledApp app = installed(*harness.state, program);
    app.isProtected = true;

    QSignalSpy inventory(harness.state.get(), &AppState::installedAppsChanged);
    harness.messages.clear();
    harness.state->uninstall(app);
    harness.settle();
    ASSERT_EQ(harness.messages.size(), 2);
    EXPECT_TRUE(
        harness.messages[1].startsWith(QStringLiteral("Could not remove ") + app.displayName + QStringLiteral(": ")))
        << harness.messages[1].toStdString();
    EXPECT_FALSE(harness.state->isLoadingApps());
    EXPECT_EQ(inventory.count(), 0);
    EXPECT_TRUE(QFile::exists(program));
}
