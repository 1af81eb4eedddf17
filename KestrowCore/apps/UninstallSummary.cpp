#include "apps/UninstallSummary.h"

#include "platform/PathText.h"
#include "storage/DiscoveredItem.h"

namespace kestrow {

JsonValue UninstallSummary::toJson(DateEncoding dates) const
{
    JsonValue::Array urls;
    for (const QString& path : deletedPaths)
        urls.emplace_back(PathText::fileURLString(path));
    JsonValue::Array items;
    for (const TrashItemRecord& record : records)
        items.push_back(record.toJson());
    return JsonValue::object({
        {QStringLiteral("id"), uuidText(id)},
        {QStringLiteral("appName"), appName},
        {QStringLiteral("bundleIdentifier"), bundleIdentifier},
        {QStringLiteral("bundleURL"), PathText::fileURLString(bundlePath)},
        {QStringLiteral("deletedURLs"), JsonValue(std::move(urls))},
        {QStringLiteral("freedAllocatedBytes"), freedAllocatedBytes},
        {QStringLiteral("freedLogicalBytes"), freedLogicalBytes},
        {QStringLiteral("dryRun"), dryRun},
        {QStringLiteral("records"), JsonValue(std::move(items))},
        {QStringLiteral("timestamp"), JsonDecoder::encodeDate(timestamp, dates)},
    });
}

} // namespace kestrow
