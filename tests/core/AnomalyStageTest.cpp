#include "TestHome.h"

#include "rules/RuleRegistry.h"
#include "safety/CacheDirTagDetector.h"
#include "scan/DeepScanEngine.h"

#include <gtest/gtest.h>

using namespace kestrow;
using kestrow::test::TestHome;

namespace {

constexpr std::int64_t heavy = 110 * 1024 * 1024;

} // namespace

TEST(AnomalyStage, FullScanReportsAnomaliesAsOrphanedItemsOfTheirTier)
{
    TestHome home;
    home.allocateFile(QStringLiteral("Projects/shard-store/blob"), heavy);
    CacheDirTagDetector::writeTag(home.path(QStringLiteral("Projects/shard-store")), QStringLiteral("Shards"));
    home.allocateFile(QStringLiteral("Projects/checkout-service/blob"), heavy);  // "out" in its name
    home.allocateFile(QStringLiteral("Projects/light-cache/blob"), 1024 * 1024); // below 100 MiB

    const auto registry = std::make_shared<RuleRegistry>(RuleRegistry::Options{.homeURL = home.path()});
    DeepScanEngine engine({.homeURL = home.path(), .ruleRegistry = registry});
    std::vector<ScanProgress> reports;
    const ScanResult result =
        engine.scan(CategorySet{StorageCategory::unknownAnomaly}, [&](const ScanProgress& p) { reports.push_back(p); });
    EXPECT_TRUE(result.warnings.isEmpty()) << result.warnings.join(QLatin1Char('\n')).toStdString();
    ASSERT_EQ(result.items.size(), 2u);
    ASSERT_EQ(reports.size(), 2u);

    const auto item = [&](const char* relative) {
        const auto found = std::find_if(result.items.begin(), result.items.end(), [&](const DiscoveredItem& each) {
            return each.path == home.path(QString::fromLatin1(relative));
        });
        return found == result.items.end() ? nullptr : &*found;
    };
    const DiscoveredItem* tagged = item("Projects/shard-store");
    ASSERT_TRUE(tagged);
    EXPECT_EQ(tagged->category, StorageCategory::developerCache) << "kept whatever the categories asked for";
    EXPECT_EQ(tagged->riskTier, RiskTier::safeToDelete);
    EXPECT_EQ(tagged->ruleId, QStringLiteral("dynamic.anomaly.shard-store"));
    EXPECT_TRUE(tagged->isOrphaned);
    EXPECT_FALSE(tagged->isLocked || tagged->requiresFullDiskAccess);
    EXPECT_FALSE(tagged->lastAccessedDate || tagged->lastModifiedDate);
    EXPECT_TRUE(
        tagged->itemDescription.startsWith(QStringLiteral("Authoritative cache tagged with CACHEDIR.TAG standard (")));
    EXPECT_TRUE(tagged->itemDescription.contains(QStringLiteral("Shards")));
    EXPECT_GE(tagged->allocatedSizeBytes, heavy);
    EXPECT_EQ(tagged->fileCount, 2);

    const DiscoveredItem* keyword = item("Projects/checkout-service");
    ASSERT_TRUE(keyword);
    EXPECT_EQ(keyword->category, StorageCategory::unknownAnomaly);
    EXPECT_EQ(keyword->riskTier, RiskTier::reviewRequired);

    // Asking for dynamic rules alone runs the detector too; without a registry it never runs.
    EXPECT_EQ(engine.scan(CategorySet{StorageCategory::dynamicRule}).items.size(), 2u);
    DeepScanEngine bare({.homeURL = home.path()});
    EXPECT_TRUE(bare.scan(CategorySet{StorageCategory::unknownAnomaly}).items.empty());
}
