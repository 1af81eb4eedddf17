#include "apps/AppLeftover.h"

#include "platform/PathText.h"
#include "storage/DiscoveredItem.h"

namespace kestrow {

QString AppLeftover::url() const
{
    return PathText::fileURLString(path);
}

JsonValue AppLeftover::toJson(DateEncoding dates) const
{
    JsonValue json = JsonValue::object({
        {QStringLiteral("id"), uuidText(id)},
        {QStringLiteral("candidateAppName"), candidateAppName},
    });
    if (bundleIdentifier)
        json.insert(QStringLiteral("bundleIdentifier"), *bundleIdentifier);
    json.insert(QStringLiteral("url"), url());
    json.insert(QStringLiteral("path"), path);
    json.insert(QStringLiteral("location"), location.rawValue());
    json.insert(QStringLiteral("allocatedSizeBytes"), allocatedSizeBytes);
    json.insert(QStringLiteral("logicalSizeBytes"), logicalSizeBytes);
    if (lastModifiedDate)
        json.insert(QStringLiteral("lastModifiedDate"), JsonDecoder::encodeDate(*lastModifiedDate, dates));
    json.insert(QStringLiteral("confidence"), confidence);
    json.insert(QStringLiteral("orphanReason"), orphanReason);
    json.insert(QStringLiteral("suggestedRiskTier"), suggestedRiskTier.rawValue());
    return json;
}

} // namespace kestrow
