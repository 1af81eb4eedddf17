#include "SyntheticApps.h"
#include "TestHome.h"

#include "apps/AppScanner.h"
#include "apps/InspectionPool.h"
#include "support/JsonWriter.h"
#include "support/KestrowError.h"

#include <gtest/gtest.h>

#include <atomic>
#include <stdexcept>

using namespace kestrow;
using kestrow::test::PropertyListFile;
using kestrow::test::SyntheticApps;
using kestrow::test::TestHome;
using Bundle = SyntheticApps::Bundle;
using Order = SyntheticApps::ByteOrder;

namespace {

AppScanner scannerFor(const TestHome& home, QStringList folders = {QStringLiteral("Applications")})
{
    for (QString& folder : folders)
        folder = home.path(folder);
    return AppScanner({.applicationsURLs = folders,
                       .systemApplicationsURLs = QStringList{},
                       .homeURL = home.path(),
                       .runningAppsProvider = [](const QString& id) { return id == QStringLiteral("com.acme.busy"); },
                       .maxConcurrentInspections = 2,
                       .host = HostSystem::macOS});
}

QStringList names(const std::vector<InstalledApp>& apps)
{
    QStringList out;
    for (const InstalledApp& app : apps)
        out.append(app.displayName);
    return out;
}

} // namespace

TEST(AppScanner, InfoPlistsInEitherFormOrNoneStillGiveARecord)
{
    TestHome home;
    QVariantMap full = SyntheticApps::info(QStringLiteral("com.acme.widget"), QStringLiteral("Widget"));
    full.insert(QStringLiteral("CFBundleDisplayName"), QStringLiteral("Acme Widget"));
    SyntheticApps::make(home, {.path = QStringLiteral("Applications/Widget.app"), .info = full});
    QVariantMap versionOnly{{QStringLiteral("CFBundleIdentifier"), QStringLiteral("")},
                            {QStringLiteral("CFBundleName"), QStringLiteral("Binary Tool")},
                            {QStringLiteral("CFBundleVersion"), QStringLiteral("42")},
                            {QStringLiteral("CFBundleDisplayName"), 7}};
    SyntheticApps::make(home, {.path = QStringLiteral("Applications/Tool.app"),
                               .info = versionOnly,
                               .format = PropertyListFile::Format::binary});
    SyntheticApps::make(home, {.path = QStringLiteral("Applications/Bare.app")});
    SyntheticApps::make(home,
                        {.path = QStringLiteral("Applications/Broken.app"), .rawInfo = QByteArray("<plist><dict")});
    SyntheticApps::make(home, {.path = QStringLiteral("Applications/Listed.app"), .info = QVariantMap()});
    home.writeFile(QStringLiteral("Applications/Listed.app/Contents/Info.plist"),
                   PropertyListFile::encode(QVariantList{QStringLiteral("a")}, PropertyListFile::Format::xml));

    const std::vector<InstalledApp> apps = scannerFor(home).listInstalledApps();
    ASSERT_EQ(names(apps),
              (QStringList{QStringLiteral("Acme Widget"), QStringLiteral("Bare"), QStringLiteral("Binary Tool"),
                           QStringLiteral("Broken"), QStringLiteral("Listed")}));
    EXPECT_EQ(apps[0].bundleIdentifier, QStringLiteral("com.acme.widget"));
    EXPECT_EQ(apps[0].version, QStringLiteral("1.0"));
    EXPECT_EQ(apps[0].shortVersion, QStringLiteral("1.0"));
    EXPECT_EQ(apps[0].bundleName, QStringLiteral("Widget"));
    // A display name that is not a string is absent; an empty identifier is replaced.
    EXPECT_EQ(apps[2].bundleIdentifier, QStringLiteral("com.unknown.binary tool"));
    EXPECT_EQ(apps[2].version, QStringLiteral("42"));
    EXPECT_EQ(apps[2].shortVersion, std::nullopt);
    for (const InstalledApp& app : {apps[1], apps[3], apps[4]}) {
        EXPECT_EQ(app.bundleIdentifier, QStringLiteral("com.unknown.") + app.displayName.toLower());
        EXPECT_EQ(app.version, QStringLiteral("Unknown"));
        EXPECT_EQ(app.bundleName, std::nullopt);
        EXPECT_EQ(app.executablePath, std::nullopt);
        EXPECT_EQ(app.architecture, QStringLiteral("unknown"));
    }
}

TEST(AppScanner, ExecutableHeadsGiveTheArchitecture)
{
    TestHome home;
    const AppScanner scanner = scannerFor(home);
    const auto architecture = [&](const QByteArray& head) {
        return scanner.detectArchitecture(home.writeFile(QStringLiteral("bin/exe"), head)).rawValue();
    };
    using S = SyntheticApps;
    EXPECT_EQ(architecture(S::thinMachO(S::cpuArm64)), QStringLiteral("arm64"));
    EXPECT_EQ(architecture(S::thinMachO(S::cpuX86_64, Order::big)), QStringLiteral("x86_64"));
    EXPECT_EQ(architecture(S::thinMachO(S::cpuI386)), QStringLiteral("unknown"));
    EXPECT_EQ(architecture(S::fatMachO({S::cpuArm64, S::cpuX86_64})), QStringLiteral("universal"));
    EXPECT_EQ(architecture(S::fatMachO({S::cpuX86_64, S::cpuArm64}, Order::little)), QStringLiteral("universal"));
    EXPECT_EQ(architecture(S::fatMachO({S::cpuX86_64, S::cpuI386})), QStringLiteral("x86_64"));
    EXPECT_EQ(architecture(S::fatMachO({S::cpuI386, S::cpuArm64})), QStringLiteral("arm64"));
    EXPECT_EQ(architecture(S::fatMachO({S::cpuI386})), QStringLiteral("unknown"));
    EXPECT_EQ(architecture(S::fatMachO({0x12, S::cpuArm64})), QStringLiteral("unknown"));
    // A Java class file shares the magic; its version sits where the slice count would.
    EXPECT_EQ(architecture(S::fatMachO({S::cpuArm64}, Order::big, 100)), QStringLiteral("unknown"));
    EXPECT_EQ(architecture(S::fatMachO({S::cpuArm64}, Order::big, 99)), QStringLiteral("arm64"));
    EXPECT_EQ(architecture(S::fatMachO({S::cpuArm64}, Order::big, 0)), QStringLiteral("unknown"));
    EXPECT_EQ(architecture(S::elf(S::elfX86_64)), QStringLiteral("x86_64"));
    EXPECT_EQ(architecture(S::elf(S::elfAArch64, Order::big)), QStringLiteral("arm64"));
    EXPECT_EQ(architecture(S::elf(40)), QStringLiteral("unknown"));
    EXPECT_EQ(architecture(S::thinMachO(S::cpuArm64).left(7)), QStringLiteral("unknown"));
    EXPECT_EQ(scanner.detectArchitecture(home.path(QStringLiteral("bin/missing"))).rawValue(),
              QStringLiteral("unknown"));
    EXPECT_EQ(scanner.detectArchitecture(std::nullopt).rawValue(), QStringLiteral("unknown"));
}

TEST(AppScanner, DiscoveryFindsEachBundleOnceAndNeverInsideOne)
{
    TestHome home;
    const QStringList folders{QStringLiteral("System/Apps"), QStringLiteral("Applications")};
    const QString real = SyntheticApps::make(home, {.path = QStringLiteral("System/Apps/Real.app")});
    home.makeSymbolicLink(QStringLiteral("Applications/Real.app"), real);
    home.makeSymbolicLink(QStringLiteral("Applications/Elsewhere"), home.makeDirectory(QStringLiteral("elsewhere")));
    SyntheticApps::make(home, {.path = QStringLiteral("elsewhere/Hidden.app")});
    SyntheticApps::make(home, {.path = QStringLiteral("Applications/Host.app")});
    SyntheticApps::make(home, {.path = QStringLiteral("Applications/Host.app/Contents/Helpers/Helper.app")});
    SyntheticApps::make(home, {.path = QStringLiteral("Applications/Foo.APP")});
    SyntheticApps::make(home, {.path = QStringLiteral("Applications/.Secret.app")});
    SyntheticApps::make(home, {.path = QStringLiteral("Applications/Folder/Sub/Deep.app")});
    SyntheticApps::make(home, {.path = QStringLiteral("Applications/Folder/Sub/Deeper/Lost.app")});

    const AppScanner scanner = scannerFor(home, folders);
    EXPECT_EQ(scanner.discoverAppBundles({home.path(folders[0]), home.path(folders[1])}, 2),
              (QStringList{real, home.path(QStringLiteral("Applications/Folder/Sub/Deep.app")),
                           home.path(QStringLiteral("Applications/Foo.APP")),
                           home.path(QStringLiteral("Applications/Host.app"))}));
    // Listed from the link first, the real bundle is the one passed over.
    EXPECT_EQ(scanner.discoverAppBundles({home.path(folders[1]), home.path(folders[0])}, 0),
              (QStringList{home.path(QStringLiteral("Applications/Foo.APP")),
                           home.path(QStringLiteral("Applications/Host.app")),
                           home.path(QStringLiteral("Applications/Real.app"))}));
    EXPECT_EQ(scanner.inspectBundle(home.path(QStringLiteral("Applications/None.app"))), std::nullopt);
}

TEST(AppScanner, BundleSizeCountsEachFileOnceAndNothingThroughLinks)
{
    TestHome home;
    const QString bundle = SyntheticApps::make(
        home, {.path = QStringLiteral("Applications/Linked.app"), .dataFiles = 2, .dataFileBytes = 10000});
    home.makeHardLink(QStringLiteral("Applications/Linked.app/Contents/Resources/copy.bin"),
                      QStringLiteral("Applications/Linked.app/Contents/Resources/data/0.bin"));
    home.writeFile(QStringLiteral("outside/big.bin"), 1000000);
    home.makeSymbolicLink(QStringLiteral("Applications/Linked.app/Contents/outside"),
                          home.path(QStringLiteral("outside")));
    // A link to the bundle elsewhere measures the bundle.
    home.makeSymbolicLink(QStringLiteral("More/Linked.app"), bundle);

    const AppScanner scanner = scannerFor(home, {QStringLiteral("More")});
    const std::vector<InstalledApp> apps = scanner.listInstalledApps();
    ASSERT_EQ(apps.size(), 1u);
    EXPECT_EQ(apps[0].logicalSizeBytes, 20000);
    EXPECT_GE(apps[0].bundleSizeBytes, 20000);
    EXPECT_LT(apps[0].bundleSizeBytes, 1000000);

    // An empty bundle's logical size falls back to the allocated one, both 0 here.
    SyntheticApps::make(home, {.path = QStringLiteral("Empty/Empty.app")});
    const std::vector<InstalledApp> empty = scannerFor(home, {QStringLiteral("Empty")}).listInstalledApps();
    EXPECT_EQ(empty[0].logicalSizeBytes, empty[0].bundleSizeBytes);
}

TEST(AppScanner, TheRecordInJson)
{
    TestHome home;
    QVariantMap info =
        SyntheticApps::info(QStringLiteral("com.acme.busy"), QStringLiteral("Busy"), QStringLiteral("2.1"));
    info.insert(QStringLiteral("CFBundleIconFile"), QStringLiteral("Busy"));
    const QString bundle = SyntheticApps::make(
        home, {.path = QStringLiteral("Applications/Busy.app"),
               .info = info,
               .executable = SyntheticApps::fatMachO({SyntheticApps::cpuArm64, SyntheticApps::cpuX86_64})});
    home.writeFile(QStringLiteral("Applications/Busy.app/Contents/Resources/Busy.icns"), QByteArray("icon"));

    const std::optional<InstalledApp> app = scannerFor(home).inspectBundle(bundle);
    ASSERT_TRUE(app);
    const QString url = QStringLiteral("file://") + bundle;
    const QString expected =
        QStringLiteral(
            "{\"id\":\"%1\",\"bundleIdentifier\":\"com.acme.busy\",\"bundleURL\":\"%2\","
            "\"displayName\":\"Busy\",\"version\":\"2.1\",\"shortVersion\":\"2.1\",\"isSystemApp\":false,"
            "\"isRunning\":true,\"bundleSizeBytes\":%3,\"logicalSizeBytes\":%4,\"architecture\":\"universal\","
            "\"iconURL\":\"%2\\/Contents\\/Resources\\/Busy.icns\",\"executablePath\":\"%5\\/Contents\\/MacOS\\/Busy\","
            "\"isProtected\":false,\"bundleName\":\"Busy\"}")
            .arg(app->id.toString(QUuid::WithoutBraces).toUpper(),
                 QString(url).replace(QStringLiteral("/"), QStringLiteral("\\/")))
            .arg(app->bundleSizeBytes)
            .arg(4 + SyntheticApps::fatMachO({SyntheticApps::cpuArm64, SyntheticApps::cpuX86_64}).size() +
                 PropertyListFile::encode(info, PropertyListFile::Format::xml).size())
            .arg(QString(bundle).replace(QStringLiteral("/"), QStringLiteral("\\/")));
    EXPECT_EQ(QString::fromUtf8(JsonWriter::compact(app->toJson())), expected);
}

TEST(AppScanner, SystemFoldersAreScannedOnRequestAndTheirAppsProtected)
{
    TestHome home;
    SyntheticApps::make(home, {.path = QStringLiteral("Applications/zeta.app")});
    SyntheticApps::make(home, {.path = QStringLiteral("Applications/Alpha.app")});
    SyntheticApps::make(home,
                        {.path = QStringLiteral("System/Applications/Mail.app"),
                         .info = SyntheticApps::info(QStringLiteral("com.example.mail"), QStringLiteral("Mail"))});
    const QString system = home.path(QStringLiteral("System"));
    const auto guard = std::make_shared<const ProtectedAppGuard>(
        ProtectedAppGuard::Options{.protectedPathPrefixes = QStringList{system}});
    const AppScanner scanner({.applicationsURLs = QStringList{home.path(QStringLiteral("Applications"))},
                              .systemApplicationsURLs = QStringList{home.path(QStringLiteral("System/Applications"))},
                              .protectedAppGuard = guard,
                              .host = HostSystem::macOS});

    EXPECT_EQ(names(scanner.listInstalledApps()), (QStringList{QStringLiteral("Alpha"), QStringLiteral("zeta")}));
    const std::vector<InstalledApp> all = scanner.scanInstalledApps(true);
    ASSERT_EQ(names(all), (QStringList{QStringLiteral("Alpha"), QStringLiteral("Mail"), QStringLiteral("zeta")}));
    EXPECT_TRUE(all[1].isProtected);
    EXPECT_TRUE(all[1].isSystemApp);
    EXPECT_EQ(all[1].protectionReason,
              QStringLiteral("Application resides in protected system directory '") + system + QStringLiteral("'"));
    EXPECT_FALSE(all[0].isProtected);

    std::stop_source stop;
    stop.request_stop();
    EXPECT_THROW((void)scanner.scanInstalledApps(true, stop.get_token()), CancellationError);
    const AppScanner defaults({.homeURL = home.path(), .host = HostSystem::macOS});
    EXPECT_EQ(defaults.applicationsURLs(),
              (QStringList{QStringLiteral("/Applications"), home.path(QStringLiteral("Applications"))}));
    // On Linux no folder replaces the home's usual places unless one is given.
    EXPECT_TRUE(AppScanner({.homeURL = home.path(), .host = HostSystem::gnuLinux}).applicationsURLs().isEmpty());
    EXPECT_EQ(defaults.systemApplicationsURLs().size(), 3);
}

TEST(InspectionPool, RunsEveryTaskOnceOnAtMostItsWidth)
{
    const InspectionPool pool(3);
    std::vector<std::atomic<int>> runs(200);
    std::atomic<int> running{0};
    std::atomic<int> most{0};
    pool.run(runs.size(), [&](std::size_t index) {
        const int now = ++running;
        for (int seen = most; now > seen && !most.compare_exchange_weak(seen, now);) {
        }
        ++runs[index];
        std::this_thread::sleep_for(std::chrono::microseconds(200));
        --running;
    });
    EXPECT_TRUE(std::all_of(runs.begin(), runs.end(), [](const std::atomic<int>& count) { return count == 1; }));
    EXPECT_LE(most.load(), 3);
    EXPECT_GE(InspectionPool().width(), 1);

    EXPECT_THROW(pool.run(10,
                          [](std::size_t index) {
                              if (index == 4)
                                  throw std::runtime_error("unreadable");
                          }),
                 std::runtime_error);
}
