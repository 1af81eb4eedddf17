#include "cleanup/TrashedRun.h"

namespace kestrow {

JsonValue TrashedRun::toJson() const
{
    JsonValue::Array itemArray;
    for (const TrashedItem& item : items) {
        JsonValue json = JsonValue::object({
            {QStringLiteral("originalPath"), item.entry.originalPath},
            {QStringLiteral("trashPath"), item.entry.filePath()},
        });
        if (item.entry.deletedAt)
            json.insert(QStringLiteral("deletionDate"), item.entry.deletedAt->toString(Qt::ISODate));
        json.insert(QStringLiteral("allocatedBytes"), item.metrics.allocatedBytes);
        itemArray.push_back(std::move(json));
    }
    return JsonValue::object({
        {QStringLiteral("operationId"), line.operationId},
        {QStringLiteral("timestamp"), line.timestamp},
        {QStringLiteral("client"), line.client},
        {QStringLiteral("itemsCount"), static_cast<std::int64_t>(items.size())},
        {QStringLiteral("allocatedBytes"), allocatedBytes},
        {QStringLiteral("items"), itemArray},
    });
}

} // namespace kestrow
