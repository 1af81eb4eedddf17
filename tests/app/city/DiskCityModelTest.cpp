#include "city/DiskCityModel.h"

#include <gtest/gtest.h>

#include <tuple>

using namespace kestrow;

namespace {

using Tint = DiskCityModel::ChipTint;
using ChipText = std::tuple<int, QString, QString, QString, Tint>;

std::vector<ChipText> chipTexts(const DiskCityModel& model)
{
    std::vector<ChipText> texts;
    for (const auto& chip : model.chips)
        texts.emplace_back(chip.id, chip.badge, chip.title, chip.detail, chip.tint);
    return texts;
}

QString s(const char* utf8)
{
    return QString::fromUtf8(utf8);
}

SystemVitals vitalsWithDisk(std::int64_t total, std::int64_t free, std::int64_t purgeable)
{
    return SystemVitals{.disk = DiskMetrics(s("/"), s("Root"), total, free, free, purgeable, 0)};
}

CategorySummary row(StorageCategory category, std::int64_t allocated, std::int64_t safe, std::int64_t review)
{
    return {.category = category,
            .totalAllocatedBytes = allocated,
            .safeToDeleteBytes = safe,
            .reviewRequiredBytes = review};
}

ScanResult scanWith(std::vector<CategorySummary> rows, std::int64_t safe, std::int64_t review)
{
    ScanResult scan;
    scan.summary.categoryBreakdown = std::move(rows);
    scan.summary.safeFreeableBytes = safe;
    scan.summary.reviewFreeableBytes = review;
    return scan;
}

} // namespace

TEST(DiskCityModel, DistrictScaleGrowsLogarithmicallyBetweenItsBounds)
{
    EXPECT_DOUBLE_EQ(DiskCityModel::districtScale(10'000'000'000, 10), 1.0);
    EXPECT_DOUBLE_EQ(DiskCityModel::districtScale(25'000'000'000, 25), 1.0);
    EXPECT_DOUBLE_EQ(DiskCityModel::districtScale(0, 10), 0.55);
    EXPECT_DOUBLE_EQ(DiskCityModel::districtScale(-5'000'000'000, 10), 0.55);
    EXPECT_DOUBLE_EQ(DiskCityModel::districtScale(1'000'000'000'000'000, 10), 1.45);
    EXPECT_NEAR(DiskCityModel::districtScale(1'000'000'000, 10), 0.680080, 1e-6);
}

TEST(DiskCityModel, DefaultsAndFlagsFollowTheApplication)
{
    const DiskCityModel unset;
    EXPECT_TRUE(unset.chips.empty());
    EXPECT_EQ(unset.systemScale, 0.8);
    EXPECT_EQ(unset.appsScale, 1.15);
    EXPECT_EQ(unset.accessibilitySummary, s("Interactive 3D storage city diorama"));

    const auto flags = [](DiskCityInputs inputs) {
        const DiskCityModel model = DiskCityModel::from(inputs);
        return std::array{model.isScanning,     model.isCleaning,    model.hasCleaned,
                          model.isDiskScanning, model.isLoadingApps, model.isAnalyzingSystem};
    };
    using Flags = std::array<bool, 6>;
    EXPECT_EQ(flags({}), (Flags{false, false, false, false, false, false}));
    EXPECT_EQ(flags({.isScanning = true}), (Flags{true, false, false, true, false, false}));
    EXPECT_EQ(flags({.isLoadingApps = true}), (Flags{true, false, false, false, true, false}));
    EXPECT_EQ(flags({.isAnalyzingSpace = true}), (Flags{true, false, false, false, false, true}));
    EXPECT_EQ(flags({.isLoadingStartup = true}), (Flags{true, false, false, false, false, true}));
    EXPECT_EQ(flags({.isCleaning = true}), (Flags{false, true, false, false, false, false}));
    const TrashSummary swept(QUuid::createUuid(), false, false, {}, QDateTime(), QDateTime());
    EXPECT_EQ(flags({.lastCleanupSummary = &swept}), (Flags{false, false, true, false, false, false}));
}

TEST(DiskCityModel, SampleCityWithoutVitalsStandsEmpty)
{
    const DiskCityModel model = DiskCityModel::from({});
    EXPECT_EQ(model.systemScale, 0.55);
    EXPECT_EQ(model.appsScale, 0.55);
    EXPECT_EQ(model.sweepableBytes, 0);
    EXPECT_EQ(model.accessibilitySummary,
              s("Disk city live telemetry: Zero KB free of Zero KB, Zero KB purgeable caches."));
    const std::vector<DiskCityModel::Chip> expected{
        {1, s("01"), s("System"), s("Zero KB active"), Tint::orange, 0.13, 0.24},
        {2, s("02"), s("Apps"), s("Zero KB storage"), Tint::orange, 0.38, 0.08},
        {3, s("03"), s("Dev quarter"), s("Zero KB caches"), Tint::teal, 0.56, 0.38},
        {4, s("!"), s("Caches"), s("safe · Zero KB"), Tint::amber, 0.63, 0.56},
        {5, s("04"), s("Trash dock"), s("restorable"), Tint::orange, 0.11, 0.58},
    };
    EXPECT_EQ(model.chips, expected);
}

TEST(DiskCityModel, SampleCitySharesOutTheUsedSpace)
{
    const SystemVitals vitals = vitalsWithDisk(500'000'000'000, 100'000'000'000, 0);
    const DiskCityModel estimated = DiskCityModel::from({.vitals = &vitals});
    EXPECT_EQ(chipTexts(estimated), (std::vector<ChipText>{
                                        {1, s("01"), s("System"), s("152 GB active"), Tint::orange},
                                        {2, s("02"), s("Apps"), s("192 GB storage"), Tint::orange},
                                        {3, s("03"), s("Dev quarter"), s("56 GB caches"), Tint::teal},
                                        {4, s("!"), s("Caches"), s("safe · 32 GB"), Tint::amber},
                                        {5, s("04"), s("Trash dock"), s("restorable"), Tint::orange},
                                    }));
    EXPECT_EQ(estimated.sweepableBytes, 32'000'000'000);
    EXPECT_EQ(estimated.systemScale, DiskCityModel::districtScale(152'000'000'000, 10));
    EXPECT_EQ(estimated.appsScale, DiskCityModel::districtScale(192'000'000'000, 25));
    EXPECT_EQ(estimated.accessibilitySummary,
              s("Disk city live telemetry: 100 GB free of 500 GB, 32 GB purgeable caches."));

    const SystemVitals measuredPurgeable = vitalsWithDisk(500'000'000'000, 100'000'000'000, 7'000'000'000);
    const DiskCityModel measured = DiskCityModel::from({.vitals = &measuredPurgeable});
    EXPECT_EQ(measured.sweepableBytes, 7'000'000'000);
    EXPECT_EQ(measured.chips[3].detail, s("safe · 7 GB"));

    const SystemVitals overfull = vitalsWithDisk(100, 200, 0);
    EXPECT_EQ(DiskCityModel::from({.vitals = &overfull}).chips[0].detail, s("Zero KB active"));
}

TEST(DiskCityModel, ScanCityNamesEveryDistrictItFound)
{
    const ScanResult scan = scanWith(
        {
            row(StorageCategory::developerCache, 8'000'000'000, 5'000'000'000, 0),
            row(StorageCategory::dockerVM, 20'000'000'000, 0, 3'000'000'000),
            row(StorageCategory::largeFiles, 9'000'000'000, 0, 3'000'000'000),
            row(StorageCategory::systemCaches, 4'000'000'000, 4'000'000'000, 0),
            row(StorageCategory::leftovers, 1'500'000'000, 0, 0),
        },
        5'000'000'000, 6'000'000'000);
    std::vector<InstalledApp> apps(2);
    apps[0].bundleSizeBytes = 1'200'000'000;
    apps[1].bundleSizeBytes = 800'000'000;
    const SystemVitals vitals = vitalsWithDisk(500'000'000'000, 100'000'000'000, 9);

    const DiskCityModel model = DiskCityModel::from({.scanResult = &scan, .vitals = &vitals, .installedApps = apps});
    // The tie between Docker and the large files goes to the first row.
    EXPECT_EQ(chipTexts(model), (std::vector<ChipText>{
                                    {1, s("01"), s("System"), s("4 GB found"), Tint::orange},
                                    {2, s("02"), s("Apps"), s("2 GB found"), Tint::orange},
                                    {3, s("03"), s("Dev quarter"), s("5 GB sweepable"), Tint::teal},
                                    {4, s("!"), s("Docker VM Disk Images"), s("ask me first · 6 GB"), Tint::amber},
                                    {5, s("04"), s("Trash dock"), s("restorable"), Tint::orange},
                                }));
    EXPECT_EQ(model.systemScale, DiskCityModel::districtScale(4'000'000'000, 10));
    EXPECT_EQ(model.appsScale, DiskCityModel::districtScale(28'000'000'000, 25));
    EXPECT_EQ(model.sweepableBytes, 5'000'000'000);
    EXPECT_EQ(model.accessibilitySummary, s("Disk city: 100 GB free, 5 GB safe to sweep, 6 GB ask me first."));
    EXPECT_FALSE(model.isSample);
}

TEST(DiskCityModel, ScanCityLeavesOutWhatItDidNotFind)
{
    const ScanResult empty = scanWith({}, 0, 0);
    const DiskCityModel bare = DiskCityModel::from({.scanResult = &empty});
    EXPECT_EQ(chipTexts(bare), (std::vector<ChipText>{{2, s("02"), s("Apps"), s("active"), Tint::orange},
                                                      {5, s("04"), s("Trash dock"), s("restorable"), Tint::orange}}));
    EXPECT_EQ(bare.systemScale, 0.55);
    EXPECT_EQ(bare.appsScale, 0.55);
    EXPECT_EQ(bare.accessibilitySummary, s("Disk city: Zero KB free, Zero KB safe to sweep, Zero KB ask me first."));

    // Nothing safe in the developer district, and a review total that no row accounts for.
    const ScanResult unsafe = scanWith({row(StorageCategory::aiModelWeights, 3'000'000'000, 0, 0),
                                        row(StorageCategory::applicationBundles, 2'000'000'000, 0, 0)},
                                       0, 1'000'000'000);
    const DiskCityModel model = DiskCityModel::from({.scanResult = &unsafe});
    EXPECT_EQ(chipTexts(model),
              (std::vector<ChipText>{{2, s("02"), s("Apps"), s("2 GB found"), Tint::orange},
                                     {3, s("03"), s("Dev quarter"), s("3 GB found"), Tint::orange},
                                     {4, s("!"), s("Ask me first"), s("ask me first · 1 GB"), Tint::amber},
                                     {5, s("04"), s("Trash dock"), s("restorable"), Tint::orange}}));
}
