#include "storage/ScanProgress.h"

#include "support/JsonDecoder.h"

namespace kestrow {

JsonValue ScanProgress::toJson() const
{
    JsonValue json = JsonValue::object({
        {QStringLiteral("currentCategory"), currentCategory.rawValue()},
        {QStringLiteral("currentPath"), currentPath},
        {QStringLiteral("itemsFound"), itemsFound},
        {QStringLiteral("totalAllocatedBytesScanned"), totalAllocatedBytesScanned},
        {QStringLiteral("totalLogicalBytesScanned"), totalLogicalBytesScanned},
    });
    if (fractionCompleted)
        json.insert(QStringLiteral("fractionCompleted"), *fractionCompleted);
    return json;
}

ScanProgress ScanProgress::fromJson(const JsonValue& json)
{
    const JsonDecoder in(json, QStringLiteral("ScanProgress"));
    std::optional<double> fraction;
    if (in.optional(QStringLiteral("fractionCompleted")))
        fraction = in.number(QStringLiteral("fractionCompleted"));
    return ScanProgress{
        .currentCategory = StorageCategory::decode(in, QStringLiteral("currentCategory")),
        .currentPath = in.string(QStringLiteral("currentPath")),
        .itemsFound = in.integer(QStringLiteral("itemsFound")),
        .totalAllocatedBytesScanned = in.integer(QStringLiteral("totalAllocatedBytesScanned")),
        .totalLogicalBytesScanned = in.integer(QStringLiteral("totalLogicalBytesScanned")),
        .fractionCompleted = fraction,
    };
}

} // namespace kestrow
