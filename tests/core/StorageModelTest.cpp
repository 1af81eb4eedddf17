#include "storage/ScanResult.h"
#include "support/JsonWriter.h"

#include <gtest/gtest.h>

using namespace kestrow;

namespace {

DiscoveredItem item(StorageCategory category, RiskTier tier, std::int64_t allocated, bool fda = false)
{
    return DiscoveredItem{.id = QUuid::createUuid(),
                          .path = QStringLiteral("/h/") + QString::number(allocated),
                          .category = category,
                          .riskTier = tier,
                          .logicalSizeBytes = allocated / 2,
                          .allocatedSizeBytes = allocated,
                          .fileCount = 1,
                          .requiresFullDiskAccess = fda,
                          .itemDescription = QStringLiteral("d")};
}

} // namespace

TEST(StorageCategory, ParseAcceptsLooseSpellingsOnly)
{
    EXPECT_EQ(StorageCategory::parse(QStringLiteral("DOCKER_VM")), StorageCategory::dockerVM);
    EXPECT_EQ(StorageCategory::parse(QStringLiteral("docker_vm")), StorageCategory::dockerVM);
    EXPECT_EQ(StorageCategory::parse(QStringLiteral("dockerVM")), StorageCategory::dockerVM);
    EXPECT_EQ(StorageCategory::parse(QStringLiteral("DockerVM")), StorageCategory::dockerVM);
    EXPECT_EQ(StorageCategory::parse(QStringLiteral("Large_Files")), StorageCategory::largeFiles);
    EXPECT_EQ(StorageCategory::parse(QStringLiteral("largefiles")), StorageCategory::largeFiles);
    EXPECT_FALSE(StorageCategory::parse(QStringLiteral("docker vm")));
    EXPECT_FALSE(StorageCategory::parse(QStringLiteral("docker-vm")));
    EXPECT_FALSE(StorageCategory::parse(QString()));
    EXPECT_FALSE(RiskTier::fromRawValue(QStringLiteral("safe_to_delete")));
    EXPECT_FALSE(StorageCategory::fromRawValue(QStringLiteral("docker_vm")));
}

TEST(ScanSummary, SumsByTierAndSortsCategoriesLargestFirst)
{
    EXPECT_EQ(ScanSummary::from({}), ScanSummary{});

    const ScanSummary summary = ScanSummary::from({
        item(StorageCategory::developerCache, RiskTier::keep, 100),
        item(StorageCategory::developerCache, RiskTier::safeToDelete, 300, true),
        item(StorageCategory::aiModelWeights, RiskTier::reviewRequired, 1000),
    });
    EXPECT_EQ(summary.totalItems, 3);
    EXPECT_EQ(summary.totalAllocatedBytes, 1400);
    EXPECT_EQ(summary.safeFreeableBytes, 300);
    EXPECT_EQ(summary.reviewFreeableBytes, 1000);
    EXPECT_TRUE(summary.requiresFullDiskAccess);
    ASSERT_EQ(summary.categoryBreakdown.size(), 2u);
    EXPECT_EQ(summary.categoryBreakdown[0].category, StorageCategory::aiModelWeights);
    const CategorySummary& developer = summary.categoryBreakdown[1];
    EXPECT_EQ(developer.riskTier, RiskTier::keep);
    EXPECT_EQ(developer.itemCount, 2);
    EXPECT_EQ(developer.totalAllocatedBytes, 400);
    EXPECT_EQ(developer.safeToDeleteBytes, 300);
    EXPECT_EQ(developer.reviewRequiredBytes, 0);
    EXPECT_TRUE(developer.requiresFullDiskAccess);
    EXPECT_FALSE(summary.categoryBreakdown[0].requiresFullDiskAccess);
}

TEST(DiscoveredItem, JsonKeepsFieldOrderAndLeavesOutAbsentOptionals)
{
    const QUuid id = QUuid::fromString(QStringLiteral("{6f1c2a4e-1b2c-4d5e-8f90-123456789abc}"));
    DiscoveredItem value{.id = id,
                         .path = QStringLiteral("/home/me/.cache/uv/my cache"),
                         .category = StorageCategory::developerCache,
                         .riskTier = RiskTier::safeToDelete,
                         .logicalSizeBytes = 10,
                         .allocatedSizeBytes = 4096,
                         .fileCount = 2,
                         .lastModifiedDate = QDateTime::fromSecsSinceEpoch(978307200 + 60, Qt::UTC),
                         .itemDescription = QStringLiteral("uv Cache (my cache)")};
    EXPECT_EQ(JsonWriter::compact(value.toJson(DateEncoding::iso8601)),
              R"({"id":"6F1C2A4E-1B2C-4D5E-8F90-123456789ABC","url":"file:\/\/\/home\/me\/.cache\/uv\/my%20cache",)"
              R"("path":"\/home\/me\/.cache\/uv\/my cache","category":"DEVELOPER_CACHE","riskTier":"SAFE_TO_DELETE",)"
              R"("logicalSizeBytes":10,"allocatedSizeBytes":4096,"fileCount":2,)"
              R"("lastModifiedDate":"2001-01-01T00:01:00Z","isOrphaned":false,"isLocked":false,)"
              R"j("requiresFullDiskAccess":false,"itemDescription":"uv Cache (my cache)"})j");
    EXPECT_EQ(JsonWriter::compact(value.toJson(DateEncoding::secondsSinceReferenceDate))
                  .contains(R"("lastModifiedDate":60,)"),
              true);

    value.ruleId = QStringLiteral("dev.uv.cache");
    for (const DateEncoding dates : {DateEncoding::iso8601, DateEncoding::secondsSinceReferenceDate})
        EXPECT_EQ(DiscoveredItem::fromJson(value.toJson(dates), dates), value);

    JsonValue missingCount = value.toJson(DateEncoding::iso8601);
    std::erase_if(missingCount.asObject(),
                  [](const auto& member) { return member.first == QLatin1String("fileCount"); });
    EXPECT_THROW((void)DiscoveredItem::fromJson(missingCount, DateEncoding::iso8601), JsonDecodingError);
    JsonValue badTier = value.toJson(DateEncoding::iso8601);
    badTier.insert(QStringLiteral("riskTier"), QStringLiteral("safe_to_delete"));
    EXPECT_THROW((void)DiscoveredItem::fromJson(badTier, DateEncoding::iso8601), JsonDecodingError);
}

TEST(ScanResult, RoundTripsThroughJson)
{
    ScanResult result;
    result.scanId = QUuid::createUuid();
    result.startedAt = QDateTime::fromSecsSinceEpoch(1700000000, Qt::UTC);
    result.completedAt = result.startedAt.addSecs(2);
    result.durationSeconds = 2;
    result.items = {item(StorageCategory::systemLogs, RiskTier::safeToDelete, 5000)};
    result.items[0].path = QStringLiteral("/h/5000");
    result.summary = ScanSummary::from(result.items);
    result.warnings = {QStringLiteral("System targets scan error: x")};
    result.scannedCategories = {StorageCategory::systemLogs};
    EXPECT_EQ(ScanResult::fromJson(result.toJson(DateEncoding::iso8601), DateEncoding::iso8601), result);
}
