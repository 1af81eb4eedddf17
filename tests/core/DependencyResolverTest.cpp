#include "TestHome.h"

#include "apps/DependencyResolver.h"
#include "support/JsonWriter.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <map>

using namespace kestrow;
using kestrow::test::TestHome;

namespace {

InstalledApp widget(const TestHome& home)
{
    return InstalledApp{
        .id = QUuid::createUuid(),
        .bundleIdentifier = QStringLiteral("com.acme.widget"),
        .bundlePath = home.path(QStringLiteral("Applications/Acme Widget.app")),
        .displayName = QStringLiteral("Acme Widget"),
        .version = QStringLiteral("1.0"),
        .bundleSizeBytes = 9000,
        .logicalSizeBytes = 8000,
    };
}

// Relative path (under the home) to location text, for every item of a footprint.
std::map<QString, QString> claimed(const TestHome& home, const AppFootprint& footprint)
{
    std::map<QString, QString> items;
    for (const ResolvedDependency& dependency : footprint.dependencies())
        items[dependency.path.mid(home.path().size() + 1)] = dependency.location.rawValue();
    return items;
}

DependencyResolver resolverFor(const TestHome& home)
{
    return DependencyResolver({.homeURL = home.path(), .host = HostSystem::macOS});
}

} // namespace

TEST(DependencyResolverTest, FindsEveryLocationOfTheLibraryAndNothingOfAnotherApplication)
{
    TestHome home;
    home.writeFile(QStringLiteral("Applications/Acme Widget.app/Contents/Info.plist"), 100);
    const QStringList owned{
        QStringLiteral("Library/Application Support/com.acme.widget/data"),
        QStringLiteral("Library/Application Support/Acme/widget/db"),
        QStringLiteral("Library/Caches/com.acme.widget/blob"),
        QStringLiteral("Library/Caches/com.acme.widget.ShipIt/update"),
        QStringLiteral("Library/Preferences/com.acme.widget.plist"),
        QStringLiteral("Library/Preferences/com.acme.widget.helper.plist"),
        QStringLiteral("Library/Preferences/ByHost/com.acme.widget.A1B2.plist"),
        QStringLiteral("Library/Saved Application State/com.acme.widget.savedState/window"),
        QStringLiteral("Library/WebKit/com.acme.widget/store"),
        QStringLiteral("Library/HTTPStorages/com.acme.widget.binarycookies"),
        QStringLiteral("Library/Containers/com.acme.widget/Data"),
        QStringLiteral("Library/Group Containers/group.com.acme.widget/shared"),
        QStringLiteral("Library/Group Containers/TEAM123.com.acme.widget/shared"),
        QStringLiteral("Library/Application Scripts/com.acme.widget/run.sh"),
        QStringLiteral("Library/LaunchAgents/com.acme.widget.agent.plist"),
        QStringLiteral("Library/Logs/DiagnosticReports/Acme Widget-2026-01-02-101010.ips"),
        QStringLiteral("Library/Logs/DiagnosticReports/com.acme.widget.crash"),
        QStringLiteral("Library/Logs/Acme Widget/today.log"),
    };
    for (const QString& file : owned)
        home.writeFile(file, 10);
    // Another maker's items that share the start of a name, and crash files of other kinds.
    for (const char* other :
         {"Library/Preferences/com.acme.widgetmaker.plist", "Library/Group Containers/TEAM123.com.acme.widgetx/a",
          "Library/Logs/DiagnosticReports/Gadget-2026-01-02.ips", "Library/Logs/DiagnosticReports/Acme Widget.txt",
          "Library/Caches/com.acme.other/a", "Library/Logs/Other/a.log"})
        home.writeFile(QString::fromLatin1(other), 10);

    const AppFootprint footprint = resolverFor(home).resolveDependencies(widget(home));

    const std::map<QString, QString> expected{
        {QStringLiteral("Applications/Acme Widget.app"), QStringLiteral("APPLICATION_BUNDLE")},
        {QStringLiteral("Library/Application Support/com.acme.widget"), QStringLiteral("APPLICATION_SUPPORT")},
        {QStringLiteral("Library/Application Support/Acme/widget"), QStringLiteral("APPLICATION_SUPPORT")},
        {QStringLiteral("Library/Caches/com.acme.widget"), QStringLiteral("CACHES")},
        {QStringLiteral("Library/Caches/com.acme.widget.ShipIt"), QStringLiteral("CACHES")},
        {QStringLiteral("Library/Preferences/com.acme.widget.plist"), QStringLiteral("PREFERENCES")},
        {QStringLiteral("Library/Preferences/com.acme.widget.helper.plist"), QStringLiteral("PREFERENCES")},
        {QStringLiteral("Library/Preferences/ByHost/com.acme.widget.A1B2.plist"), QStringLiteral("PREFERENCES")},
        {QStringLiteral("Library/Saved Application State/com.acme.widget.savedState"),
         QStringLiteral("SAVED_APPLICATION_STATE")},
        {QStringLiteral("Library/WebKit/com.acme.widget"), QStringLiteral("WEBKIT")},
        {QStringLiteral("Library/HTTPStorages/com.acme.widget.binarycookies"), QStringLiteral("HTTP_STORAGES")},
        {QStringLiteral("Library/Containers/com.acme.widget"), QStringLiteral("CONTAINERS")},
        {QStringLiteral("Library/Group Containers/group.com.acme.widget"), QStringLiteral("GROUP_CONTAINERS")},
        {QStringLiteral("Library/Group Containers/TEAM123.com.acme.widget"), QStringLiteral("GROUP_CONTAINERS")},
        {QStringLiteral("Library/Application Scripts/com.acme.widget"), QStringLiteral("APPLICATION_SCRIPTS")},
        {QStringLiteral("Library/LaunchAgents/com.acme.widget.agent.plist"), QStringLiteral("LAUNCH_AGENTS")},
        {QStringLiteral("Library/Logs/DiagnosticReports/Acme Widget-2026-01-02-101010.ips"),
         QStringLiteral("CRASH_REPORTS")},
        {QStringLiteral("Library/Logs/DiagnosticReports/com.acme.widget.crash"), QStringLiteral("CRASH_REPORTS")},
        {QStringLiteral("Library/Logs/Acme Widget"), QStringLiteral("CRASH_REPORTS")},
    };
    EXPECT_EQ(claimed(home, footprint), expected);
    ASSERT_FALSE(footprint.dependencies().empty());
    EXPECT_EQ(footprint.dependencies().front().location, DependencyLocation::applicationBundle);
    EXPECT_EQ(footprint.totalItemCount(), 19);
    EXPECT_EQ(footprint.itemCount(DependencyLocation::preferences), 3);
    EXPECT_TRUE(footprint.canUninstall());
}

TEST(DependencyResolverTest, ShortBlockedAndAppleNamesNeverBecomeCandidates)
{
    TestHome home;
    for (const char* folder :
         {"Library/Application Support/Logs", "Library/Application Support/Q", "Library/Application Support/x",
          "Library/Caches/com.apple.Safari", "Library/Logs/DiagnosticReports"})
        home.makeDirectory(QString::fromLatin1(folder));
    const DependencyResolver resolver = resolverFor(home);

    InstalledApp logs = widget(home);
    logs.displayName = QStringLiteral("Logs");
    logs.bundleIdentifier = QStringLiteral("io.x");
    const DependencyResolver::SearchCandidates candidates = resolver.generateSearchCandidates(logs);
    EXPECT_EQ(candidates.candidateNames, QStringList{QStringLiteral("logs")});
    EXPECT_EQ(candidates.candidateBundleIds, QStringList{QStringLiteral("io.x")});
    EXPECT_TRUE(claimed(home, resolver.resolveDependencies(logs)).empty());

    InstalledApp letter = widget(home);
    letter.displayName = QStringLiteral("Q");
    letter.bundleIdentifier = QStringLiteral("com.acme.app");
    EXPECT_EQ(resolver.generateSearchCandidates(letter).candidateNames, QStringList{QStringLiteral("app")});
    EXPECT_TRUE(claimed(home, resolver.resolveDependencies(letter)).empty());

    InstalledApp safari = widget(home);
    safari.displayName = QStringLiteral("Safari");
    safari.bundleIdentifier = QStringLiteral("com.apple.Safari");
    EXPECT_TRUE(resolver.generateSearchCandidates(safari).candidateBundleIds.isEmpty());
    EXPECT_TRUE(claimed(home, resolver.resolveDependencies(safari)).empty());
}

TEST(DependencyResolverTest, LinksOutOfTheHomeAreRefusedAndOneFolderIsClaimedOnce)
{
    TestHome home;
    QTemporaryDir outside;
    home.makeSymbolicLink(QStringLiteral("Library/Caches/com.acme.widget"), outside.path());
    home.writeFile(QStringLiteral("Library/Application Support/AcmeWidget/data"), 10);
    home.makeSymbolicLink(QStringLiteral("Library/Application Support/acmewidget"), QStringLiteral("AcmeWidget"));
    home.makeSymbolicLink(QStringLiteral("Library/Containers/com.acme.widget"),
                          home.path(QStringLiteral("Library/Application Support/AcmeWidget")));

    const std::map<QString, QString> expected{
        {QStringLiteral("Library/Application Support/AcmeWidget"), QStringLiteral("APPLICATION_SUPPORT")}};
    EXPECT_EQ(claimed(home, resolverFor(home).resolveDependencies(widget(home))), expected);
}

TEST(DependencyResolverTest, HardLinksCountOnceAcrossTheFootprintAndAMissingBundleKeepsItsFigures)
{
    TestHome home;
    const QString blob = home.writeFile(QStringLiteral("Library/Caches/com.acme.widget/blob"), 40000);
    home.makeHardLink(QStringLiteral("Library/Containers/com.acme.widget/blob"),
                      QStringLiteral("Library/Caches/com.acme.widget/blob"));
    home.makeSymbolicLink(QStringLiteral("Library/Containers/com.acme.widget/link"), blob);
    const std::int64_t allocated = FileManager().status(blob)->allocatedSize;

    InstalledApp app = widget(home);
    app.isRunning = true;
    const AppFootprint footprint = resolverFor(home).resolveDependencies(app);

    ASSERT_EQ(footprint.dependencies().size(), 2U);
    const ResolvedDependency& container = footprint.dependencies().at(1);
    EXPECT_EQ(footprint.dependencies().at(0).allocatedSizeBytes, allocated);
    EXPECT_EQ(container.allocatedSizeBytes, 0);
    EXPECT_EQ(container.fileCount, 2); // the second name and the link
    EXPECT_TRUE(container.isDirectory);
    // No bundle on the disk: the record's own figures and one more item.
    EXPECT_EQ(footprint.totalAllocatedSizeBytes(), allocated + 9000);
    EXPECT_EQ(footprint.totalLogicalSizeBytes(), 40000 + 8000);
    EXPECT_EQ(footprint.totalItemCount(), 3);
    EXPECT_EQ(footprint.itemCount(DependencyLocation::applicationBundle), 1);
    EXPECT_FALSE(footprint.canUninstall());
    EXPECT_EQ(footprint.blockingReason(), QStringLiteral("Application is currently running"));

    app.isProtected = true;
    EXPECT_EQ(AppFootprint(app, {}).blockingReason(), QStringLiteral("Protected macOS system application"));
    app.protectionReason = QStringLiteral("Apple system component 'com.apple.x'");
    EXPECT_EQ(AppFootprint(app, {}).blockingReason(), app.protectionReason);
}

TEST(DependencyResolverTest, FootprintJson)
{
    const InstalledApp app{
        .id = QUuid(QStringLiteral("{11111111-2222-3333-4444-555555555555}")),
        .bundleIdentifier = QStringLiteral("com.acme.widget"),
        .bundlePath = QStringLiteral("/Applications/Acme Widget.app"),
        .displayName = QStringLiteral("Acme Widget"),
        .version = QStringLiteral("1.0"),
        .isRunning = true,
        .bundleSizeBytes = 4096,
        .logicalSizeBytes = 100,
    };
    const ResolvedDependency cache{
        .id = QUuid(QStringLiteral("{AAAAAAAA-BBBB-CCCC-DDDD-EEEEEEEEEEEE}")),
        .path = QStringLiteral("/Users/u/Library/Caches/com.acme.widget"),
        .location = DependencyLocation::caches,
        .allocatedSizeBytes = 8192,
        .logicalSizeBytes = 5000,
        .fileCount = 2,
        .lastModifiedDate = QDateTime::fromSecsSinceEpoch(1767225600, Qt::UTC),
        .isDirectory = true,
    };
    EXPECT_EQ(JsonWriter::compact(AppFootprint(app, {cache}).toJson(DateEncoding::iso8601)),
              QByteArray(R"({"app":{"id":"11111111-2222-3333-4444-555555555555","bundleIdentifier":"com.acme.widget",)"
                         R"("bundleURL":"file:\/\/\/Applications\/Acme%20Widget.app","displayName":"Acme Widget",)"
                         R"("version":"1.0","isSystemApp":false,"isRunning":true,"bundleSizeBytes":4096,)"
                         R"("logicalSizeBytes":100,"isProtected":false},"dependencies":[)"
                         R"({"id":"AAAAAAAA-BBBB-CCCC-DDDD-EEEEEEEEEEEE",)"
                         R"("url":"file:\/\/\/Users\/u\/Library\/Caches\/com.acme.widget",)"
                         R"("path":"\/Users\/u\/Library\/Caches\/com.acme.widget","location":"CACHES",)"
                         R"("allocatedSizeBytes":8192,"logicalSizeBytes":5000,"fileCount":2,)"
                         R"("lastModifiedDate":"2026-01-01T00:00:00Z","isDirectory":true,"isSymlink":false}],)"
                         R"("totalAllocatedSizeBytes":12288,"totalLogicalSizeBytes":5100,"totalItemCount":2,)"
                         R"("itemCountByLocation":{"APPLICATION_BUNDLE":1,"CACHES":1},"canUninstall":false,)"
                         R"("blockingReason":"Application is currently running"})"));
}
