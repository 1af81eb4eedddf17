#include "TestHome.h"

#include "scan/DeepScanEngine.h"

#include <gtest/gtest.h>

#include <latch>

using namespace kestrow;
using kestrow::test::TestHome;

namespace {

DiscoveredItem item(const QString& path, RiskTier tier, std::int64_t allocated)
{
    return DiscoveredItem{.id = QUuid::createUuid(),
                          .path = path,
                          .category = StorageCategory::developerCache,
                          .riskTier = tier,
                          .logicalSizeBytes = allocated,
                          .allocatedSizeBytes = allocated,
                          .fileCount = 1,
                          .itemDescription = path};
}

// Lets a test hold the scan inside its first walk until it has asked the scan to stop.
class GateFileManager : public FileManager {
public:
    void walk(const QString& root, WalkSink& sink, std::stop_token stop, const WalkOptions& options) const override
    {
        entered.count_down();
        released.wait();
        FileManager::walk(root, sink, stop, options);
    }
    mutable std::latch entered{1};
    mutable std::latch released{1};
};

} // namespace

TEST(Deduplicate, MergesEqualPathsByTierThenSize)
{
    DiscoveredItem small = item(QStringLiteral("/h/a"), RiskTier::safeToDelete, 10);
    small.isOrphaned = true;
    small.lastAccessedDate = QDateTime::fromSecsSinceEpoch(2000, Qt::UTC);
    small.ruleId = QStringLiteral("rule.small");
    DiscoveredItem large = item(QStringLiteral("/h/./x/../a"), RiskTier::safeToDelete, 20);
    large.lastAccessedDate = QDateTime::fromSecsSinceEpoch(1000, Qt::UTC);
    large.lastModifiedDate = QDateTime::fromSecsSinceEpoch(5, Qt::UTC);
    large.isLocked = true;

    const auto merged = DeepScanEngine::deduplicate({small, large, item(QStringLiteral("/h/b"), RiskTier::keep, 15)});
    ASSERT_EQ(merged.size(), 2u);
    EXPECT_EQ(merged[0].path, QStringLiteral("/h/./x/../a")) << "larger item of equal tier leads";
    EXPECT_EQ(merged[0].id, large.id);
    EXPECT_EQ(merged[0].allocatedSizeBytes, 20);
    EXPECT_EQ(merged[0].lastAccessedDate, small.lastAccessedDate);
    EXPECT_EQ(merged[0].lastModifiedDate, large.lastModifiedDate);
    EXPECT_FALSE(merged[0].isOrphaned) << "orphaned only when both are";
    EXPECT_TRUE(merged[0].isLocked);
    EXPECT_EQ(merged[0].ruleId, QStringLiteral("rule.small")) << "the secondary's rule fills in";
    EXPECT_EQ(merged[1].path, QStringLiteral("/h/b"));

    // Equal tier and size: the first one stays primary. A higher tier leads whatever its size.
    const DiscoveredItem first = item(QStringLiteral("/h/c"), RiskTier::safeToDelete, 7);
    const DiscoveredItem second = item(QStringLiteral("/h/c"), RiskTier::safeToDelete, 7);
    EXPECT_EQ(DeepScanEngine::deduplicate({first, second})[0].id, first.id);
    const DiscoveredItem cautious = item(QStringLiteral("/h/c"), RiskTier::reviewRequired, 1);
    const auto byTier = DeepScanEngine::deduplicate({first, cautious});
    EXPECT_EQ(byTier[0].id, cautious.id);
    EXPECT_EQ(byTier[0].riskTier, RiskTier::reviewRequired);
    EXPECT_EQ(byTier[0].allocatedSizeBytes, 7);
}

TEST(DeepScanEngine, ScansUVCachesAndReportsEveryCategoryWhenNoneAreGiven)
{
    TestHome home;
    home.writeFile(QStringLiteral(".cache/uv/wheels-v1/pkg.whl"), 20000);
    home.writeFile(QStringLiteral(".cache/uv/archive-v0/x/y"), 5000);
    home.writeFile(QStringLiteral(".cache/uv/loose-file"), 99999);
    home.writeFile(QStringLiteral(".cache/uv/.hidden/z"), 99999);
    home.makeDirectory(QStringLiteral("Library/Caches/uv")); // an empty root is an item of its own
    DeepScanEngine engine({.homeURL = home.path()});

    std::vector<ScanProgress> reports;
    const ScanResult all = engine.scan(std::nullopt, [&](const ScanProgress& p) { reports.push_back(p); });
    const ScanResult empty = engine.scan(CategorySet{});
    EXPECT_EQ(all.scannedCategories.size(), 16u);
    EXPECT_EQ(empty.scannedCategories, all.scannedCategories);
    EXPECT_EQ(all.scannedCategories.front(), StorageCategory::aiModelWeights) << "sorted by raw value";
    EXPECT_EQ(all.scannedCategories.back(), StorageCategory::xcodeArtifacts);

    QStringList found;
    for (const DiscoveredItem& item : all.items)
        if (item.ruleId == QStringLiteral("dev.uv.cache"))
            found.append(item.itemDescription + QLatin1Char('=') + item.path.mid(home.path().size()));
    found.sort();
    EXPECT_EQ(found, QStringList({QStringLiteral("uv Cache (archive-v0)=/.cache/uv/archive-v0"),
                                  QStringLiteral("uv Cache (wheels-v1)=/.cache/uv/wheels-v1"),
                                  QStringLiteral("uv Package and Wheel Archives=/Library/Caches/uv")}));
    EXPECT_TRUE(all.warnings.isEmpty());
    EXPECT_GE(all.durationSeconds, 0);
    EXPECT_LE(all.startedAt, all.completedAt);
    EXPECT_EQ(all.summary, ScanSummary::from(all.items));
    ASSERT_GE(reports.size(), 3u);
    for (const ScanProgress& report : reports) {
        EXPECT_EQ(report.itemsFound, 1);
        EXPECT_FALSE(report.fractionCompleted.has_value());
    }
}

TEST(DeepScanEngine, CategoriesWithoutScannersGiveAnEmptyResult)
{
    TestHome home;
    home.writeFile(QStringLiteral(".cache/uv/wheels/a"), 100);
    DeepScanEngine engine({.homeURL = home.path()});
    const ScanResult result = engine.scan(CategorySet{StorageCategory::largeFiles});
    EXPECT_TRUE(result.items.empty());
    EXPECT_TRUE(result.warnings.isEmpty());
    EXPECT_EQ(result.scannedCategories, std::vector<StorageCategory>{StorageCategory::largeFiles});
}

TEST(DeepScanEngine, StreamDeliversProgressThenItemsThenTheResult)
{
    TestHome home;
    home.writeFile(QStringLiteral(".cache/uv/a/f"), 100);
    home.writeFile(QStringLiteral(".cache/uv/b/f"), 200);
    DeepScanEngine engine({.homeURL = home.path()});
    const auto stream = engine.scanStream(CategorySet{StorageCategory::developerCache});
    std::vector<ScanProgressEvent> events;
    while (auto event = stream->next())
        events.push_back(std::move(*event));
    ASSERT_FALSE(events.empty());
    ASSERT_TRUE(events.back().isCompleted());
    const ScanResult& result = events.back().completed();
    ASSERT_EQ(events.size(), 2 * result.items.size() + 1);
    for (size_t i = 0; i < result.items.size(); ++i) {
        EXPECT_TRUE(events[i].isProgress());
        ASSERT_TRUE(events[result.items.size() + i].isItemDiscovered());
        EXPECT_EQ(events[result.items.size() + i].itemDiscovered(), result.items[i]);
    }
}

TEST(DeepScanEngine, CancellingTheStreamEndsItAtOnce)
{
    TestHome home;
    home.writeFile(QStringLiteral(".cache/uv/a/f"), 100);
    auto gate = std::make_shared<GateFileManager>();
    DeepScanEngine engine({.homeURL = home.path(), .fileManager = gate});
    const auto stream = engine.scanStream(CategorySet{StorageCategory::developerCache});
    gate->entered.wait();
    stream->cancel();
    gate->released.count_down();
    EXPECT_FALSE(stream->next().has_value()) << "nothing reaches a consumer that has ended the stream";
}

TEST(DeepScanEngine, AStopRequestedMidScanEndsItAtTheNextStage)
{
    TestHome home;
    home.writeFile(QStringLiteral(".cache/uv/a/f"), 100);
    DeepScanEngine engine({.homeURL = home.path()});
    std::stop_source source;
    const auto stopOnFirstItem = [&](const ScanProgress&) { source.request_stop(); };
    EXPECT_THROW((void)engine.scan(CategorySet{StorageCategory::developerCache, StorageCategory::systemLogs},
                                   stopOnFirstItem, source.get_token()),
                 CancellationError);
}

TEST(DeepScanEngine, ACancelledScanThrowsAndReturnsNothing)
{
    TestHome home;
    home.writeFile(QStringLiteral(".cache/uv/a/f"), 100);
    DeepScanEngine engine({.homeURL = home.path()});
    std::stop_source source;
    source.request_stop();
    EXPECT_THROW((void)engine.scan(std::nullopt, {}, source.get_token()), CancellationError);
}
