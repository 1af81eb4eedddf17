#include "scan/ScanRequest.h"

#include <gtest/gtest.h>

using namespace kestrow;

namespace {

const QString home = QStringLiteral("/Users/a");

DiscoveredItem item(const QString& name, std::int64_t bytes, StorageCategory category)
{
    return DiscoveredItem{.id = QUuid::createUuid(),
                          .path = home + QLatin1Char('/') + name,
                          .category = category,
                          .allocatedSizeBytes = bytes,
                          .fileCount = 1};
}

} // namespace

TEST(ScanRequest, AsksForTheCategoriesTheDisabledTargetsLeave)
{
    const ScanTargetFilter noDocker({ScanTarget::dockerVM}, {}, home);
    const CategorySet everyOther = *noDocker.categoriesToScan();
    EXPECT_FALSE(everyOther.contains(StorageCategory::dockerVM));
    EXPECT_EQ(ScanRequest({}, noDocker).categoriesToScan(), everyOther);

    const CategorySet two{StorageCategory::dockerVM, StorageCategory::developerCache};
    EXPECT_EQ(ScanRequest(two).categoriesToScan(), two);
    EXPECT_EQ(ScanRequest(two, noDocker).categoriesToScan(), CategorySet{StorageCategory::developerCache});
    // Nothing left: the asked ones are scanned and the result narrowed afterwards.
    const CategorySet docker{StorageCategory::dockerVM};
    EXPECT_EQ(ScanRequest(docker, noDocker).categoriesToScan(), docker);
}

TEST(ScanRequest, NarrowsByTargetThenByMinimumAndRecountsTheSummary)
{
    ScanResult result;
    result.items = {item(QStringLiteral("small"), 999, StorageCategory::developerCache),
                    item(QStringLiteral("edge"), 1000, StorageCategory::developerCache),
                    item(QStringLiteral("vm"), 5000, StorageCategory::dockerVM)};
    result.summary = ScanSummary::from(result.items);

    const ScanResult narrowed =
        ScanRequest({}, ScanTargetFilter({ScanTarget::dockerVM}, {}, home), 1000).narrowed(result);
    ASSERT_EQ(narrowed.items.size(), 1u);
    EXPECT_EQ(narrowed.items.front().path, home + QStringLiteral("/edge"));
    EXPECT_EQ(narrowed.summary, ScanSummary::from(narrowed.items));

    EXPECT_EQ(ScanRequest().narrowed(result).items.size(), 3u);
}
