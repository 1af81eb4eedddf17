#include "TestHome.h"

#include "apps/AppUninstaller.h"
#include "apps/AppUninstallerError.h"
#include "apps/UninstallerError.h"
#include "platform/RunningApplications.h"

#include <QFile>

#include <gtest/gtest.h>

#include <atomic>

using namespace kestrow;
using kestrow::test::TestHome;

namespace {

// A Trash that refuses application bundles and takes everything else.
class BundleRefusingFileManager : public FileManager {
public:
    FileOperationResult trashItem(const AnchoredItem& item) const override
    {
        if (item.path.endsWith(QLatin1String(".app")))
            return {false, std::nullopt, QStringLiteral("Operation not permitted")};
        return FileManager::trashItem(item);
    }
};

// One application process that ignores a request to quit and ends only when forced.
class StubbornApplication : public RunningApplications {
public:
    std::vector<std::int64_t> processIds(const QString&) const override
    {
        return alive ? std::vector<std::int64_t>{42} : std::vector<std::int64_t>{};
    }
    QSet<QString> runningIdentifiers() const override
    {
        return alive ? QSet<QString>{QStringLiteral("com.acme.widget")} : QSet<QString>{};
    }
    void requestTermination(std::int64_t, bool force) const override
    {
        if (force)
            alive = false;
        ++requests;
    }
    bool isTerminated(std::int64_t) const override { return !alive; }

    mutable std::atomic<bool> alive = true;
    mutable std::atomic<int> requests = 0;
};

struct Fixture {
    TestHome home;
    InstalledApp app;
    QString bundle;
    QString cache;
    QString preferences;

    Fixture()
    {
        bundle = home.path(QStringLiteral("Applications/Acme Widget.app"));
        home.writeFile(QStringLiteral("Applications/Acme Widget.app/Contents/MacOS/Acme Widget"), 5000);
        cache = home.path(QStringLiteral("Library/Caches/com.acme.widget"));
        home.writeFile(QStringLiteral("Library/Caches/com.acme.widget/blob"), 3000);
        preferences = home.writeFile(QStringLiteral("Library/Preferences/com.acme.widget.plist"), 200);
        app = InstalledApp{.id = QUuid::createUuid(),
                           .bundleIdentifier = QStringLiteral("com.acme.widget"),
                           .bundlePath = bundle,
                           .displayName = QStringLiteral("Acme Widget"),
                           .version = QStringLiteral("1.0")};
    }

    [[nodiscard]] AppUninstaller uninstaller(std::shared_ptr<const FileManager> files = {},
                                             ProtectedAppGuard::Options guard = {}) const
    {
        return AppUninstaller({
            .fileManager = files,
            .auditLogger = std::make_shared<AuditLogger>(AuditLogger::Options{.homeURL = home.path()}),
            .dependencyResolver = std::make_shared<const DependencyResolver>(
                DependencyResolver::Options{.homeURL = home.path(), .fileManager = files, .host = HostSystem::macOS}),
            .runningAppsProvider = [](const QString&) { return false; },
            .homeURL = home.path(),
            .protectedAppGuard = std::make_shared<const ProtectedAppGuard>(std::move(guard)),
        });
    }

    [[nodiscard]] qsizetype logLines() const
    {
        QFile log(home.path(QStringLiteral(".kestrow/audit.jsonl")));
        return log.open(QIODevice::ReadOnly) ? log.readAll().count('\n') : 0;
    }
};

ProtectedAppGuard::Options notRunning()
{
    return {.runningAppsProvider = [](const QString&) { return false; }};
}

} // namespace

TEST(AppUninstallerTest, OptionMatrix)
{
    Fixture f;
    const AppUninstaller uninstaller = f.uninstaller({}, notRunning());

    const UninstallSummary none =
        uninstaller.uninstall(f.app, false, {.includeBundle = false, .includeDependencies = false});
    EXPECT_TRUE(none.records.empty());
    EXPECT_TRUE(none.deletedPaths.isEmpty());
    EXPECT_EQ(f.logLines(), 0);

    // A dry run with a purge asked is a dry run: every item simulated, nothing touched.
    const UninstallSummary dry = uninstaller.uninstall(f.app, true, {.permanentPurge = true});
    EXPECT_EQ(dry.deletedPaths, (QStringList{f.bundle, f.cache, f.preferences}));
    EXPECT_GT(dry.freedLogicalBytes, 8000);
    EXPECT_TRUE(dry.dryRun);
    EXPECT_TRUE(QFile::exists(f.bundle) && QFile::exists(f.cache));
    EXPECT_EQ(f.logLines(), 1);

    const UninstallSummary data = uninstaller.uninstall(f.app, false, {.includeBundle = false});
    EXPECT_EQ(data.deletedPaths, (QStringList{f.cache, f.preferences}));
    EXPECT_TRUE(QFile::exists(f.bundle));
    EXPECT_FALSE(QFile::exists(f.cache));
    ASSERT_EQ(data.records.size(), 2U);
    EXPECT_TRUE(data.records.front().trashPath.has_value());

    const UninstallSummary purged = uninstaller.uninstall(f.app, false, {.permanentPurge = true});
    EXPECT_EQ(purged.deletedPaths, QStringList{f.bundle});
    EXPECT_FALSE(purged.records.front().trashPath.has_value());
    EXPECT_FALSE(QFile::exists(f.bundle));
    EXPECT_EQ(f.logLines(), 3);
}

TEST(AppUninstallerTest, ProtectedApplicationsAreRefusedEvenWhenForced)
{
    Fixture f;
    const AppUninstaller uninstaller = f.uninstaller({}, notRunning());
    InstalledApp app = f.app;
    app.isProtected = true;
    try {
        (void)uninstaller.uninstall(app, true, {.force = true});
        FAIL() << "a protected application was uninstalled";
    } catch (const AppUninstallerError& error) {
        EXPECT_EQ(error.kind(), AppUninstallerError::Case::systemAppProtected);
        EXPECT_TRUE(error.description().startsWith(QStringLiteral("Application 'Acme Widget' (com.acme.widget) is ")));
    }
    // An Apple identifier outside the home is refused here though the guard lets it pass.
    app = f.app;
    app.bundleIdentifier = QStringLiteral("com.apple.widget");
    app.bundlePath = QStringLiteral("/Applications/Widget.app");
    EXPECT_THROW((void)uninstaller.uninstall(app, true, {}), AppUninstallerError);
    EXPECT_TRUE(QFile::exists(f.bundle));
}

TEST(AppUninstallerTest, RunningApplicationIsStoppedOnlyWhenForced)
{
    Fixture f;
    auto stubborn = std::make_shared<StubbornApplication>();
    const AppUninstaller uninstaller = f.uninstaller({}, {.runningApplications = stubborn});
    try {
        (void)uninstaller.uninstall(f.app, true, {});
        FAIL() << "a running application was uninstalled without force";
    } catch (const AppUninstallerError& error) {
        EXPECT_EQ(error.kind(), AppUninstallerError::Case::applicationIsRunning);
    }
    EXPECT_EQ(stubborn->requests, 0);

    const UninstallSummary summary = uninstaller.uninstall(f.app, true, {.force = true});
    EXPECT_FALSE(stubborn->alive);
    EXPECT_EQ(summary.deletedPaths.size(), 3);

    // A terminator that cannot stop it ends the call before anything is touched.
    const AppUninstaller failing = f.uninstaller({}, {.runningAppsProvider = [](const QString&) { return true; },
                                                      .processTerminator = [](const QString&, bool) { return false; }});
    try {
        (void)failing.uninstall(f.app, false, {.force = true});
        FAIL() << "an application that kept running was uninstalled";
    } catch (const UninstallerError& error) {
        EXPECT_EQ(error.kind(), UninstallerError::Case::applicationRunning);
    }
    EXPECT_TRUE(QFile::exists(f.cache));
}

TEST(AppUninstallerTest, BundleThatCannotMoveFailsAfterItsDataWent)
{
    Fixture f;
    const AppUninstaller uninstaller = f.uninstaller(std::make_shared<BundleRefusingFileManager>(), notRunning());
    try {
        (void)uninstaller.uninstall(f.app, false, {});
        FAIL() << "a bundle that stayed was reported as removed";
    } catch (const UninstallerError& error) {
        EXPECT_EQ(error.description(), QStringLiteral("Failed to delete item at '") + f.bundle +
                                           QStringLiteral("': Operation not permitted"));
    }
    EXPECT_TRUE(QFile::exists(f.bundle));
    EXPECT_FALSE(QFile::exists(f.cache));
    EXPECT_FALSE(QFile::exists(f.preferences));
}
