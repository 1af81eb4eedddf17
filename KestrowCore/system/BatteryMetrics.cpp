#include "system/BatteryMetrics.h"

namespace kestrow {

JsonValue BatteryMetrics::toJson() const
{
    JsonValue json = JsonValue::object({
        {QStringLiteral("percentage"), percentage},
        {QStringLiteral("isCharging"), isCharging},
        {QStringLiteral("isACPowered"), isACPowered},
    });
    if (timeRemainingMinutes)
        json.insert(QStringLiteral("timeRemainingMinutes"), *timeRemainingMinutes);
    if (healthPercentage)
        json.insert(QStringLiteral("healthPercentage"), *healthPercentage);
    if (cycleCount)
        json.insert(QStringLiteral("cycleCount"), *cycleCount);
    return json;
}

} // namespace kestrow
