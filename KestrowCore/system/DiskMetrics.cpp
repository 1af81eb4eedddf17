#include "system/DiskMetrics.h"

#include "support/ByteCountFormatter.h"

#include <algorithm>

namespace kestrow {

DiskMetrics::DiskMetrics(QString volumePath, QString volumeName, std::int64_t totalBytes, std::int64_t freeBytes,
                         std::int64_t availableBytes, std::int64_t purgeableBytes, std::int64_t systemBytes)
    : volumePath(std::move(volumePath))
    , volumeName(std::move(volumeName))
    , totalBytes(totalBytes)
    , freeBytes(freeBytes)
    , availableBytes(availableBytes)
    , purgeableBytes(purgeableBytes)
    , systemBytes(systemBytes)
    , usedBytes(std::max<std::int64_t>(0, totalBytes - freeBytes))
    , usedPercentage(totalBytes < 1 ? 0.0 : static_cast<double>(usedBytes) / static_cast<double>(totalBytes) * 100.0)
{
}

QString DiskMetrics::formattedFreeBytes() const
{
    return ByteCountFormatter::format(freeBytes);
}
QString DiskMetrics::formattedAvailableBytes() const
{
    return ByteCountFormatter::format(availableBytes);
}

JsonValue DiskMetrics::toJson() const
{
    return JsonValue::object({
        {QStringLiteral("volumePath"), volumePath},
        {QStringLiteral("volumeName"), volumeName},
        {QStringLiteral("totalBytes"), totalBytes},
        {QStringLiteral("freeBytes"), freeBytes},
        {QStringLiteral("availableBytes"), availableBytes},
        {QStringLiteral("purgeableBytes"), purgeableBytes},
        {QStringLiteral("systemBytes"), systemBytes},
        {QStringLiteral("usedBytes"), usedBytes},
        {QStringLiteral("usedPercentage"), usedPercentage},
    });
}

} // namespace kestrow
