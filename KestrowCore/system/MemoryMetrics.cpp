#include "system/MemoryMetrics.h"

#include "support/ByteCountFormatter.h"

namespace kestrow {

QString MemoryMetrics::formattedUsedBytes() const
{
    return ByteCountFormatter::format(usedBytes);
}
QString MemoryMetrics::formattedTotalBytes() const
{
    return ByteCountFormatter::format(totalBytes);
}

JsonValue MemoryMetrics::toJson() const
{
    return JsonValue::object({
        {QStringLiteral("totalBytes"), totalBytes},
        {QStringLiteral("usedBytes"), usedBytes},
        {QStringLiteral("freeBytes"), freeBytes},
        {QStringLiteral("appMemoryBytes"), appMemoryBytes},
        {QStringLiteral("wiredBytes"), wiredBytes},
        {QStringLiteral("compressedBytes"), compressedBytes},
        {QStringLiteral("pressureStatus"), pressureStatus.rawValue()},
        {QStringLiteral("usedPercentage"), usedPercentage},
    });
}

} // namespace kestrow
