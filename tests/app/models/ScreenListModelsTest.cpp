#include "models/AtlasRowsModel.h"
#include "models/CategoryRowsModel.h"
#include "models/InstalledAppsModel.h"
#include "models/LeftoversModel.h"
#include "models/StartupItemsModel.h"
#include "models/SweepGroupsModel.h"

#include <QAbstractItemModelTester>

#include <gtest/gtest.h>

using namespace kestrow;

namespace {

// The value of a named role in a row.
QVariant field(const QAbstractItemModel& model, int row, const char* role)
{
    const int key = model.roleNames().key(QByteArray(role), -1);
    EXPECT_NE(key, -1) << role;
    return model.data(model.index(row, 0), key);
}

} // namespace

TEST(ScreenListModels, RowsFollowTheRecordsAndNameTheirColours)
{
    SweepGroupsModel groups;
    QAbstractItemModelTester groupsTester(&groups, QAbstractItemModelTester::FailureReportingMode::Fatal);
    groups.setRecords({{.name = QStringLiteral("Developer Caches"),
                        .hint = QStringLiteral("pip, yarn"),
                        .risk = RiskTier::reviewRequired,
                        .bytes = 1'500'000}});
    ASSERT_EQ(groups.rowCount(), 1);
    EXPECT_EQ(field(groups, 0, "pillText").toString(), QStringLiteral("Ask me first"));
    EXPECT_EQ(field(groups, 0, "pillColor").toString(), QStringLiteral("askAmber"));
    EXPECT_EQ(field(groups, 0, "sizeText").toString(), QStringLiteral("1.5 MB"));
    EXPECT_FALSE(groups.data(groups.index(0, 0), Qt::DisplayRole).isValid()) << "only the named roles answer";
    groups.setRecords({});
    EXPECT_EQ(groups.rowCount(), 0);

    CategoryRowsModel rows;
    QAbstractItemModelTester rowsTester(&rows, QAbstractItemModelTester::FailureReportingMode::Fatal);
    rows.setRecords({{.category = StorageCategory::aiModelWeights,
                      .riskTier = RiskTier::keep,
                      .itemCount = 1,
                      .totalAllocatedBytes = 0}});
    EXPECT_EQ(field(rows, 0, "countText").toString(), QStringLiteral("1 items"));
    EXPECT_EQ(field(rows, 0, "symbol").toString(), QStringLiteral("cpu"));
    EXPECT_EQ(field(rows, 0, "pillText").toString(), QStringLiteral("Hands off"));
    EXPECT_EQ(field(rows, 0, "pillColor").toString(), QStringLiteral("inkTertiary"));
}

TEST(ScreenListModels, AtlasRowsMeasureEachChildAgainstItsFolder)
{
    AtlasRowsModel rows;
    QAbstractItemModelTester tester(&rows, QAbstractItemModelTester::FailureReportingMode::Fatal);
    SpaceNode folder{.name = QStringLiteral("home"), .isDirectory = true, .allocatedSizeBytes = 100};
    folder.children = std::vector<SpaceNode>{
        {.name = QStringLiteral("big"), .isDirectory = true, .allocatedSizeBytes = 250},
        {.name = QStringLiteral("note.txt"), .isDirectory = false, .allocatedSizeBytes = 25},
    };
    rows.setFolder(folder);
    ASSERT_EQ(rows.rowCount(), 2);
    EXPECT_DOUBLE_EQ(field(rows, 0, "fraction").toDouble(), 1.0) << "a child larger than its folder fills the bar";
    EXPECT_DOUBLE_EQ(field(rows, 1, "fraction").toDouble(), 0.25);
    EXPECT_EQ(field(rows, 0, "symbol").toString(), QStringLiteral("folder.fill"));
    EXPECT_EQ(field(rows, 1, "symbol").toString(), QStringLiteral("doc.fill"));
    EXPECT_TRUE(field(rows, 1, "accessibleText").toString().startsWith(QStringLiteral("file note.txt")));

    folder.allocatedSizeBytes = 0;
    rows.setFolder(folder);
    EXPECT_DOUBLE_EQ(field(rows, 1, "fraction").toDouble(), 0.0) << "a zero-sized folder leaves every bar empty";
    folder.children.reset();
    rows.setFolder(folder);
    EXPECT_EQ(rows.rowCount(), 0);
    rows.setFolder(std::nullopt);
    EXPECT_EQ(rows.rowCount(), 0);
}

TEST(ScreenListModels, ApplicationsOrphansAndLaunchItemsShowWhatTheirButtonsNeed)
{
    InstalledAppsModel apps;
    QAbstractItemModelTester appsTester(&apps, QAbstractItemModelTester::FailureReportingMode::Fatal);
    apps.setRecords(
        {{.displayName = QStringLiteral("Editor"), .version = QStringLiteral("2.1"), .bundleSizeBytes = 2'000'000},
         {.displayName = QStringLiteral("Shell"), .isProtected = true}});
    EXPECT_TRUE(field(apps, 0, "canRemove").toBool());
    EXPECT_EQ(field(apps, 0, "detail").toString(), QStringLiteral("2.1 · 2 MB"));
    EXPECT_FALSE(field(apps, 1, "canRemove").toBool());
    EXPECT_EQ(field(apps, 1, "accessibleText").toString(), QStringLiteral("Shell, System"));
    EXPECT_EQ(field(apps, 1, "iconSource").toString(), QString());

    LeftoversModel leftovers;
    QAbstractItemModelTester leftoversTester(&leftovers, QAbstractItemModelTester::FailureReportingMode::Fatal);
    leftovers.setRecords({{.candidateAppName = QStringLiteral("Gone"),
                           .path = QStringLiteral("/h/.config/gone"),
                           .allocatedSizeBytes = 4000}});
    EXPECT_EQ(field(leftovers, 0, "accessibleText").toString(), QStringLiteral("Sweep Gone orphan"));
    EXPECT_EQ(field(leftovers, 0, "sizeText").toString(), QStringLiteral("4 KB"));

    bool enabledShown = true;
    StartupItemsModel items([&enabledShown](const StartupItem&) { return enabledShown; });
    QAbstractItemModelTester itemsTester(&items, QAbstractItemModelTester::FailureReportingMode::Fatal);
    items.setRecords({{.name = QStringLiteral("agent"),
                       .type = StartupType::loginItem,
                       .fileURL = QStringLiteral("/h/.config/autostart/agent.desktop"),
                       .impact = StartupImpact::medium}});
    EXPECT_EQ(field(items, 0, "typeText").toString(), QStringLiteral("Login Item"));
    EXPECT_EQ(field(items, 0, "impactText").toString(), QStringLiteral("MEDIUM"));
    EXPECT_EQ(field(items, 0, "path").toString(), QStringLiteral("/h/.config/autostart/agent.desktop"));
    EXPECT_TRUE(field(items, 0, "switchOn").toBool());
    int changes = 0;
    QObject::connect(&items, &QAbstractItemModel::dataChanged, [&changes] { ++changes; });
    enabledShown = false;
    items.switchesChanged();
    EXPECT_EQ(changes, 1);
    EXPECT_FALSE(field(items, 0, "switchOn").toBool()) << "the switch shows the position under way";
}
