#include "city/DiskCityModel.h"

#include "support/ByteCountFormatter.h"

#include <algorithm>
#include <cmath>

namespace kestrow {

namespace {

using Tint = DiskCityModel::ChipTint;

// The five districts have fixed identities and places; "!" marks the one that wants attention.
struct ChipPlace {
    int id;
    const char* badge;
    double x;
    double y;
};
constexpr ChipPlace systemPlace{1, "01", 0.13, 0.24};
constexpr ChipPlace appsPlace{2, "02", 0.38, 0.08};
constexpr ChipPlace devPlace{3, "03", 0.56, 0.38};
constexpr ChipPlace reviewPlace{4, "!", 0.63, 0.56};
constexpr ChipPlace trashPlace{5, "04", 0.11, 0.58};

constexpr double systemBaselineGB = 10;
constexpr double appsBaselineGB = 25;

DiskCityModel::Chip chip(const ChipPlace& place, const QString& title, const QString& detail, Tint tint)
{
    return {.id = place.id,
            .badge = QLatin1String(place.badge),
            .title = title,
            .detail = detail,
            .tint = tint,
            .x = place.x,
            .y = place.y};
}

QString bytes(std::int64_t count)
{
    return ByteCountFormatter::format(count);
}

DiskCityModel::Chip trashChip()
{
    return chip(trashPlace, QStringLiteral("Trash dock"), QStringLiteral("restorable"), Tint::orange);
}

std::int64_t truncatedShare(std::int64_t total, double share)
{
    return static_cast<std::int64_t>(static_cast<double>(total) * share);
}

void applyMeasuredCity(DiskCityModel& model, const ScanResult& scan, std::span<const InstalledApp> installedApps,
                       std::int64_t freeBytes)
{
    const ScanSummary& summary = scan.summary;
    std::int64_t systemBytes = 0;
    std::int64_t appBytes = 0;
    std::int64_t devBytes = 0;
    std::int64_t devSafe = 0;
    const CategorySummary* heaviestReview = nullptr;
    for (const CategorySummary& row : summary.categoryBreakdown) {
        switch (row.category.group()) {
        case CategoryGroup::system:
            systemBytes += row.totalAllocatedBytes;
            break;
        case CategoryGroup::applications:
            appBytes += row.totalAllocatedBytes;
            break;
        case CategoryGroup::developer:
            devBytes += row.totalAllocatedBytes;
            devSafe += row.safeToDeleteBytes;
            break;
        default:
            break;
        }
        // Strictly larger, so that the first of equal rows wins.
        if (row.reviewRequiredBytes >= 1 &&
            (heaviestReview == nullptr || row.reviewRequiredBytes > heaviestReview->reviewRequiredBytes))
            heaviestReview = &row;
    }
    const std::int64_t safeTotal = summary.safeFreeableBytes;
    const std::int64_t reviewTotal = summary.reviewFreeableBytes;

    model.systemScale = DiskCityModel::districtScale(systemBytes, systemBaselineGB);
    // The apps tower stands for whichever of the apps and the developer district is heavier.
    model.appsScale = DiskCityModel::districtScale(std::max(appBytes, devBytes), appsBaselineGB);
    model.sweepableBytes = safeTotal;
    model.accessibilitySummary = QStringLiteral("Disk city: ") + bytes(freeBytes) + QStringLiteral(" free, ") +
                                 bytes(safeTotal) + QStringLiteral(" safe to sweep, ") + bytes(reviewTotal) +
                                 QStringLiteral(" ask me first.");

    if (systemBytes > 0)
        model.chips.push_back(
            chip(systemPlace, QStringLiteral("System"), bytes(systemBytes) + QStringLiteral(" found"), Tint::orange));

    std::int64_t bundleBytes = 0;
    for (const InstalledApp& app : installedApps)
        bundleBytes += app.bundleSizeBytes;
    const std::int64_t appsShown = std::max(appBytes, bundleBytes);
    model.chips.push_back(chip(appsPlace, QStringLiteral("Apps"),
                               appsShown < 1 ? QStringLiteral("active") : bytes(appsShown) + QStringLiteral(" found"),
                               Tint::orange));

    if (devBytes >= 1) {
        const QString title = QStringLiteral("Dev quarter");
        model.chips.push_back(devSafe >= 1
                                  ? chip(devPlace, title, bytes(devSafe) + QStringLiteral(" sweepable"), Tint::teal)
                                  : chip(devPlace, title, bytes(devBytes) + QStringLiteral(" found"), Tint::orange));
    }

    if (reviewTotal >= 1) {
        const QString title = heaviestReview ? heaviestReview->category.displayName() : QStringLiteral("Ask me first");
        model.chips.push_back(
            chip(reviewPlace, title, QString::fromUtf8("ask me first · ") + bytes(reviewTotal), Tint::amber));
    }

    model.chips.push_back(trashChip());
}

void applySampleCity(DiskCityModel& model, const SystemVitals* vitals, std::int64_t totalBytes, std::int64_t freeBytes)
{
    const std::int64_t used = std::max<std::int64_t>(totalBytes - freeBytes, 0);
    const std::int64_t purgeable =
        vitals && vitals->disk.purgeableBytes >= 1 ? vitals->disk.purgeableBytes : truncatedShare(used, 0.08);
    // A picture, not a measurement: these shares are not those of the capacity track.
    const std::int64_t systemEst = truncatedShare(used, 0.38);
    const std::int64_t appsEst = truncatedShare(used, 0.48);
    const std::int64_t cachesEst = truncatedShare(used, 0.14);

    model.systemScale = DiskCityModel::districtScale(systemEst, systemBaselineGB);
    model.appsScale = DiskCityModel::districtScale(appsEst, appsBaselineGB);
    model.sweepableBytes = purgeable;
    model.accessibilitySummary = QStringLiteral("Disk city live telemetry: ") + bytes(freeBytes) +
                                 QStringLiteral(" free of ") + bytes(totalBytes) + QStringLiteral(", ") +
                                 bytes(purgeable) + QStringLiteral(" purgeable caches.");
    model.chips = {
        chip(systemPlace, QStringLiteral("System"), bytes(systemEst) + QStringLiteral(" active"), Tint::orange),
        chip(appsPlace, QStringLiteral("Apps"), bytes(appsEst) + QStringLiteral(" storage"), Tint::orange),
        chip(devPlace, QStringLiteral("Dev quarter"), bytes(cachesEst) + QStringLiteral(" caches"), Tint::teal),
        chip(reviewPlace, QStringLiteral("Caches"), QString::fromUtf8("safe · ") + bytes(purgeable), Tint::amber),
        trashChip(),
    };
}

} // namespace

double DiskCityModel::districtScale(std::int64_t bytes, double baselineGB)
{
    const double gb = std::max(static_cast<double>(bytes) / 1'000'000'000.0, 0.0);
    const double scale = std::log10(gb + 1) / std::log10(baselineGB + 1) * 0.45 + 0.55;
    return std::clamp(scale, 0.55, 1.45);
}

DiskCityModel DiskCityModel::from(const DiskCityInputs& inputs)
{
    DiskCityModel model;
    model.isScanning = inputs.isScanning || inputs.isLoadingApps || inputs.isAnalyzingSpace || inputs.isLoadingStartup;
    model.isCleaning = inputs.isCleaning;
    model.hasCleaned = inputs.lastCleanupSummary != nullptr;
    model.isDiskScanning = inputs.isScanning;
    model.isLoadingApps = inputs.isLoadingApps;
    model.isAnalyzingSystem = inputs.isAnalyzingSpace || inputs.isLoadingStartup;

    const std::int64_t totalBytes = inputs.vitals ? inputs.vitals->disk.totalBytes : 0;
    const std::int64_t freeBytes = inputs.vitals ? inputs.vitals->disk.freeBytes : 0;
    if (inputs.scanResult)
        applyMeasuredCity(model, *inputs.scanResult, inputs.installedApps, freeBytes);
    else
        applySampleCity(model, inputs.vitals, totalBytes, freeBytes);
    return model;
}

} // namespace kestrow
