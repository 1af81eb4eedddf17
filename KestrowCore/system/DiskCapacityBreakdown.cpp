#include "system/DiskCapacityBreakdown.h"

#include <algorithm>

namespace kestrow {

namespace {

// Each estimate is a share of the used space bounded by a fixed figure, so that small and
// huge disks both look right.
constexpr double sweepableShare = 0.08;
constexpr double sweepableCeiling = 5'000'000'000.0;
constexpr double systemShare = 0.15;
constexpr double systemFloor = 15'000'000'000.0;
constexpr double appsShare = 0.18;
constexpr double appsFloor = 18'000'000'000.0;

} // namespace

DiskCapacityBreakdown::DiskCapacityBreakdown(std::int64_t total, std::int64_t free, std::int64_t purgeable,
                                             std::int64_t system, std::int64_t installedApps, bool hasInstalledApps,
                                             std::optional<std::int64_t> safeFreeable)
{
    if (total < 1)
        return;
    totalBytes = static_cast<double>(total);
    freeBytes = std::clamp(static_cast<double>(free), 0.0, totalBytes);
    usedBytes = std::max(totalBytes - freeBytes, 0.0);
    const double used = usedBytes;
    const auto clampToUsed = [used](std::int64_t bytes) {
        return std::min(std::max(static_cast<double>(bytes), 0.0), used);
    };

    if (!safeFreeable)
        sweepableBytes = purgeable < 1 ? std::min(used * sweepableShare, sweepableCeiling)
                                       : std::min(static_cast<double>(purgeable), used);
    else
        sweepableBytes = clampToUsed(*safeFreeable);
    systemBytes = system < 1 ? std::min(std::max(used * systemShare, systemFloor), used)
                             : std::min(static_cast<double>(system), used);
    appsBytes = !hasInstalledApps && installedApps < 1 ? std::min(std::max(used * appsShare, appsFloor), used)
                                                       : clampToUsed(installedApps);

    const double sum = sweepableBytes + systemBytes + appsBytes;
    if (sum > 0 && sum > used) {
        const double scale = used / sum;
        sweepableBytes *= scale;
        systemBytes *= scale;
        appsBytes *= scale;
    }
    otherBytes = std::max(used - (sweepableBytes + systemBytes + appsBytes), 0.0);
}

JsonValue DiskCapacityBreakdown::toJson() const
{
    return JsonValue::object({
        {QStringLiteral("totalBytes"), totalBytes},
        {QStringLiteral("freeBytes"), freeBytes},
        {QStringLiteral("usedBytes"), usedBytes},
        {QStringLiteral("systemBytes"), systemBytes},
        {QStringLiteral("appsBytes"), appsBytes},
        {QStringLiteral("sweepableBytes"), sweepableBytes},
        {QStringLiteral("otherBytes"), otherBytes},
    });
}

} // namespace kestrow
