#include "storage/ScanResult.h"

namespace kestrow {

JsonValue ScanResult::toJson(DateEncoding dates) const
{
    JsonValue::Array itemArray;
    itemArray.reserve(items.size());
    for (const DiscoveredItem& item : items)
        itemArray.push_back(item.toJson(dates));
    JsonValue::Array warningArray;
    for (const QString& warning : warnings)
        warningArray.emplace_back(warning);
    JsonValue::Array categoryArray;
    for (const StorageCategory category : scannedCategories)
        categoryArray.emplace_back(category.rawValue());
    return JsonValue::object({
        {QStringLiteral("scanId"), uuidText(scanId)},
        {QStringLiteral("startedAt"), JsonDecoder::encodeDate(startedAt, dates)},
        {QStringLiteral("completedAt"), JsonDecoder::encodeDate(completedAt, dates)},
        {QStringLiteral("durationSeconds"), durationSeconds},
        {QStringLiteral("items"), itemArray},
        {QStringLiteral("summary"), summary.toJson()},
        {QStringLiteral("warnings"), warningArray},
        {QStringLiteral("scannedCategories"), categoryArray},
    });
}

ScanResult ScanResult::fromJson(const JsonValue& json, DateEncoding dates)
{
    const JsonDecoder in(json, QStringLiteral("ScanResult"));
    ScanResult result{
        .scanId = uuidFromText(in, QStringLiteral("scanId")),
        .startedAt = in.date(QStringLiteral("startedAt"), dates),
        .completedAt = in.date(QStringLiteral("completedAt"), dates),
        .durationSeconds = in.number(QStringLiteral("durationSeconds")),
        .items = {},
        .summary = ScanSummary::fromJson(in.required(QStringLiteral("summary"))),
        .warnings = in.stringArray(QStringLiteral("warnings")),
        .scannedCategories = {},
    };
    for (const JsonValue& item : in.array(QStringLiteral("items")))
        result.items.push_back(DiscoveredItem::fromJson(item, dates));
    for (const QString& raw : in.stringArray(QStringLiteral("scannedCategories"))) {
        const auto category = StorageCategory::fromRawValue(raw);
        if (!category)
            in.fail(QStringLiteral("scannedCategories"), QStringLiteral("unknown category ") + raw);
        result.scannedCategories.push_back(*category);
    }
    return result;
}

} // namespace kestrow
