#include "analysis/StorageAnomaly.h"

#include "platform/PathText.h"
#include "storage/DiscoveredItem.h"

namespace kestrow {

QString StorageAnomaly::url() const
{
    return PathText::fileURLString(path);
}

JsonValue StorageAnomaly::toJson(DateEncoding dates) const
{
    JsonValue::Array keywords;
    for (const QString& keyword : matchedKeywords)
        keywords.emplace_back(keyword);
    JsonValue json = JsonValue::object({
        {QStringLiteral("id"), uuidText(id)},
        {QStringLiteral("url"), url()},
        {QStringLiteral("path"), path},
        {QStringLiteral("allocatedSizeBytes"), allocatedSizeBytes},
        {QStringLiteral("logicalSizeBytes"), logicalSizeBytes},
        {QStringLiteral("fileCount"), fileCount},
        {QStringLiteral("confidenceScore"), confidenceScore},
        {QStringLiteral("hasCacheDirTag"), hasCacheDirTag},
    });
    if (tagApplicationComment)
        json.insert(QStringLiteral("tagApplicationComment"), *tagApplicationComment);
    json.insert(QStringLiteral("matchedKeywords"), JsonValue(std::move(keywords)));
    json.insert(QStringLiteral("suggestedRiskTier"), suggestedRiskTier.rawValue());
    json.insert(QStringLiteral("suggestedCategory"), suggestedCategory.rawValue());
    json.insert(QStringLiteral("anomalyDescription"), anomalyDescription);
    if (proposedRule)
        json.insert(QStringLiteral("proposedRule"), proposedRule->toJson(dates));
    return json;
}

} // namespace kestrow
