#include "system/SystemVitals.h"

namespace kestrow {

JsonValue SystemVitals::toJson(DateEncoding dates) const
{
    JsonValue json = JsonValue::object({
        {QStringLiteral("timestamp"), JsonDecoder::encodeDate(timestamp, dates)},
        {QStringLiteral("cpu"), cpu.toJson()},
        {QStringLiteral("memory"), memory.toJson()},
        {QStringLiteral("disk"), disk.toJson()},
    });
    if (battery)
        json.insert(QStringLiteral("battery"), battery->toJson());
    json.insert(QStringLiteral("thermalState"), thermalState.rawValue());
    return json;
}

} // namespace kestrow
