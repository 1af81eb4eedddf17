#include "cleanup/TrashItemRecord.h"

#include "platform/PathText.h"
#include "storage/DiscoveredItem.h"

namespace kestrow {

QString TrashItemRecord::sourceURL() const
{
    return PathText::fileURLString(sourcePath);
}

std::optional<QString> TrashItemRecord::trashURL() const
{
    if (!trashPath)
        return std::nullopt;
    return PathText::fileURLString(*trashPath);
}

JsonValue TrashItemRecord::toJson() const
{
    JsonValue json = JsonValue::object({
        {QStringLiteral("id"), uuidText(id)},
        {QStringLiteral("sourceURL"), sourceURL()},
        {QStringLiteral("sourcePath"), sourcePath},
    });
    if (trashPath) {
        json.insert(QStringLiteral("trashURL"), *trashURL());
        json.insert(QStringLiteral("trashPath"), *trashPath);
    }
    json.insert(QStringLiteral("allocatedBytes"), allocatedBytes);
    json.insert(QStringLiteral("logicalBytes"), logicalBytes);
    json.insert(QStringLiteral("fileCount"), fileCount);
    json.insert(QStringLiteral("status"), status.rawValue());
    if (errorMessage)
        json.insert(QStringLiteral("errorMessage"), *errorMessage);
    return json;
}

} // namespace kestrow
