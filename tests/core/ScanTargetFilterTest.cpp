#include "scan/ScanTargetFilter.h"

#include "TestHome.h"

#include <gtest/gtest.h>

using namespace kestrow;

namespace {

const QString home = QStringLiteral("/Users/a");

DiscoveredItem item(const QString& path, StorageCategory category = StorageCategory::developerCache,
                    std::optional<QString> ruleId = std::nullopt)
{
    return DiscoveredItem{.id = QUuid::createUuid(),
                          .path = path,
                          .category = category,
                          .allocatedSizeBytes = 4096,
                          .fileCount = 1,
                          .ruleId = std::move(ruleId)};
}

ScanTargetFilter excluding(const QString& path)
{
    return ScanTargetFilter({}, {path}, home);
}

} // namespace

TEST(ScanTargetFilter, NormalizesExclusionsAndDropsWhatIsNotAbsolute)
{
    const ScanTargetFilter filter({},
                                  {QStringLiteral("  ~/Work/ "), QStringLiteral("relative/path"), QString(),
                                   QStringLiteral("/a/./b/../c/"), QStringLiteral("~")},
                                  home);
    EXPECT_EQ(filter.excludedPaths(), (QStringList{home + QStringLiteral("/Work"), QStringLiteral("/a/c"), home}));
    EXPECT_EQ(ScanTargetFilter::normalize(QStringLiteral("/"), home), QStringLiteral("/"));
    EXPECT_EQ(filter, ScanTargetFilter({}, {home + QStringLiteral("/Work"), QStringLiteral("/a/c"), home}, home));

    const ScanTargetFilter nothing({}, {}, home);
    EXPECT_TRUE(nothing.isPassThrough());
    EXPECT_FALSE(nothing.categoriesToScan());
    EXPECT_FALSE(nothing.isExcluded(home));
}

TEST(ScanTargetFilter, ExclusionWorksBothWaysAndThroughLinks)
{
    const ScanTargetFilter foo = excluding(QStringLiteral("/Users/a/Library/Caches/foo"));
    EXPECT_TRUE(foo.isExcluded(QStringLiteral("/Users/a/Library/Caches")));
    EXPECT_TRUE(foo.isExcluded(QStringLiteral("/Users/a/Library/Caches/foo")));
    EXPECT_TRUE(foo.isExcluded(QStringLiteral("/Users/a/Library/Caches/foo/bar")));
    EXPECT_FALSE(foo.isExcluded(QStringLiteral("/Users/a/Library/Caches/foobar")));
    EXPECT_FALSE(foo.isExcluded(QStringLiteral("/Users/a/Library/Cache")));
    EXPECT_TRUE(excluding(QStringLiteral("/")).isExcluded(QStringLiteral("/opt/anything")));

    const test::TestHome testHome;
    testHome.makeDirectory(QStringLiteral("r/x"));
    testHome.makeSymbolicLink(QStringLiteral("l"), testHome.path(QStringLiteral("r")));
    const ScanTargetFilter real({}, {testHome.path(QStringLiteral("r"))}, testHome.path());
    EXPECT_TRUE(real.isExcluded(testHome.path(QStringLiteral("l/x"))));
    const ScanTargetFilter link({}, {testHome.path(QStringLiteral("l"))}, testHome.path());
    EXPECT_TRUE(link.isExcluded(testHome.path(QStringLiteral("r/x"))));
    EXPECT_FALSE(link.isExcluded(testHome.path(QStringLiteral("other"))));
}

TEST(ScanTargetFilter, DisabledTargetsRuleOutByCategoryRuleIdAndLocation)
{
    EXPECT_EQ(ScanTargetFilter({ScanTarget::uvPython}, {}, home).categoriesToScan(), std::nullopt);
    const auto scanned = ScanTargetFilter({ScanTarget::systemCaches}, {}, home).categoriesToScan();
    ASSERT_TRUE(scanned);
    EXPECT_EQ(scanned->size(), 13u);
    EXPECT_FALSE(scanned->contains(StorageCategory::systemCaches));
    EXPECT_FALSE(scanned->contains(StorageCategory::systemLogs));
    EXPECT_FALSE(scanned->contains(StorageCategory::crashReports));

    const ScanTargetFilter npm({ScanTarget::npmBun}, {}, home);
    EXPECT_EQ(npm.disabledTarget(item(QStringLiteral("/opt/store"), StorageCategory::developerCache,
                                      QStringLiteral("dev.pnpm.store"))),
              ScanTarget::npmBun);
    EXPECT_EQ(npm.disabledTarget(item(home + QStringLiteral("/.npm/_cacache"))), ScanTarget::npmBun);
    EXPECT_TRUE(npm.allows(item(home + QStringLiteral("/.npm-global"))));
    // Only items inside a target's location belong to it, not items holding it.
    EXPECT_TRUE(npm.allows(item(home)));

    const ScanTargetFilter caches({ScanTarget::systemCaches}, {}, home);
    EXPECT_EQ(caches.disabledTarget(
                  item(QStringLiteral("/x"), StorageCategory::largeFiles, QStringLiteral("sys.user.caches"))),
              ScanTarget::systemCaches);
}

TEST(ScanTargetFilter, ApplyKeepsOrderAndRecomputesTheSummaryOnly)
{
    ScanResult result;
    result.scanId = QUuid::createUuid();
    result.items = {item(home + QStringLiteral("/.cargo/registry")), item(home + QStringLiteral("/keep/a")),
                    item(home + QStringLiteral("/Work/b")), item(home + QStringLiteral("/keep/c"))};
    result.summary = ScanSummary::from(result.items);
    result.warnings = {QStringLiteral("System targets scan error: x")};
    result.scannedCategories = {StorageCategory::developerCache};

    EXPECT_EQ(ScanTargetFilter({}, {}, home).apply(result), result);
    EXPECT_EQ(ScanTargetFilter({}, {QStringLiteral("/elsewhere")}, home).apply(result), result);

    const ScanResult filtered = ScanTargetFilter({ScanTarget::cargo}, {QStringLiteral("~/Work")}, home).apply(result);
    ASSERT_EQ(filtered.items.size(), 2u);
    EXPECT_EQ(filtered.items[0].path, home + QStringLiteral("/keep/a"));
    EXPECT_EQ(filtered.items[1].path, home + QStringLiteral("/keep/c"));
    EXPECT_EQ(filtered.summary, ScanSummary::from(filtered.items));
    EXPECT_EQ(filtered.scanId, result.scanId);
    EXPECT_EQ(filtered.warnings, result.warnings);
    EXPECT_EQ(filtered.scannedCategories, result.scannedCategories);
}
