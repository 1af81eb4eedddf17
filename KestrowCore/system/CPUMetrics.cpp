#include "system/CPUMetrics.h"

namespace kestrow {

JsonValue CPUMetrics::toJson() const
{
    JsonValue::Array cores(perCoreUsage.begin(), perCoreUsage.end());
    return JsonValue::object({
        {QStringLiteral("totalUsagePercentage"), totalUsagePercentage},
        {QStringLiteral("userPercentage"), userPercentage},
        {QStringLiteral("systemPercentage"), systemPercentage},
        {QStringLiteral("idlePercentage"), idlePercentage},
        {QStringLiteral("coreCount"), coreCount},
        {QStringLiteral("perCoreUsage"), std::move(cores)},
    });
}

} // namespace kestrow
