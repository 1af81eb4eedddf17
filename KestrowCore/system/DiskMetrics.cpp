#include "system/DiskMetrics.h"

#include "support/ByteCountFormatter.h"

#include <algorithm>

namespace kestrow {

DiskMetrics::DiskMetrics(QString path, QString name, std::int64_t totalSize, std::int64_t freeSize,
                         std::int64_t availableSize, std::int64_t purgeableSize, std::int64_t systemSize)
    : volumePath(std::move(path))
    , volumeName(std::move(name))
    , totalBytes(totalSize)
    , freeBytes(freeSize)
    , availableBytes(availableSize)
    , purgeableBytes(purgeableSize)
    , systemBytes(systemSize)
    , usedBytes(std::max<std::int64_t>(0, totalSize - freeSize))
    , usedPercentage(totalSize < 1 ? 0.0 : static_cast<double>(usedBytes) / static_cast<double>(totalSize) * 100.0)
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
