#include "RefusingFileManager.h"
#include "TestHome.h"

#include "scan/SystemTargets.h"
#include "support/KestrowError.h"

#include <gtest/gtest.h>

using namespace kestrow;
using kestrow::test::RefusingFileManager;
using kestrow::test::TestHome;

TEST(SystemTargets, ARefusedTopFolderIsOnePlaceholderAndTheRestGoesOn)
{
    TestHome home;
    home.writeFile(QStringLiteral("Library/Caches/com.example.app/a"), 10);
    home.writeFile(QStringLiteral("Library/Logs/app/a.log"), 10);
    home.writeFile(QStringLiteral("Library/Logs/DiagnosticReports/x.ips"), 10);
    const auto refusing = std::make_shared<RefusingFileManager>(
        QStringList{home.path(QStringLiteral("Library/Caches")), home.path(QStringLiteral("Library/Logs"))});
    const SystemTargets targets({.homeURL = home.path(), .fileManager = refusing});
    const SystemTargetsOutcome outcome =
        targets.scan({StorageCategory::systemCaches, StorageCategory::systemLogs, StorageCategory::crashReports}, {});

    ASSERT_EQ(outcome.items.size(), 2u) << "what lies below a refused folder is not tried";
    EXPECT_EQ(outcome.items[0].itemDescription, QStringLiteral("User Caches (Requires Full Disk Access)"));
    EXPECT_EQ(outcome.items[0].ruleId, QStringLiteral("sys.user.caches"));
    EXPECT_EQ(outcome.items[1].itemDescription, QStringLiteral("User Logs (Requires Full Disk Access)"));
    EXPECT_EQ(outcome.items[1].category, StorageCategory::systemLogs);
    EXPECT_EQ(outcome.items[1].fileCount, 0);
    ASSERT_EQ(outcome.warnings.size(), 2);
    EXPECT_TRUE(outcome.warnings[1].startsWith(QStringLiteral("Full Disk Access is required to scan User Logs at ") +
                                               home.path(QStringLiteral("Library/Logs")) + QStringLiteral(". Grant")));
}

TEST(SystemTargets, CacheNamesOfOtherScannersAreSkippedByWholeNameOrBrowserPart)
{
    TestHome home;
    for (const char* name : {"Yarn", "yarn-berry", "PIP", "com.google.Keystone", "org.mozilla.firefox", "uv.lock"})
        home.writeFile(QStringLiteral("Library/Caches/") + QLatin1String(name) + QStringLiteral("/x"), 10);
    home.writeFile(QStringLiteral("Library/Caches/loose.db"), 10);
    const SystemTargets targets({.homeURL = home.path()});
    QStringList found;
    for (const DiscoveredItem& item : targets.scan({StorageCategory::systemCaches}, {}).items)
        found.append(item.itemDescription);
    EXPECT_EQ(found, QStringList({QStringLiteral("loose.db Cache"), QStringLiteral("uv.lock Cache"),
                                  QStringLiteral("yarn-berry Cache")}));

    std::stop_source source;
    EXPECT_THROW(
        (void)targets.scan(
            {StorageCategory::systemCaches}, [&](const ScanProgress&) { source.request_stop(); }, source.get_token()),
        CancellationError)
        << "a stop between entries ends the scan";
}
