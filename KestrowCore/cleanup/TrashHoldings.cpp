#include "cleanup/TrashHoldings.h"

#include <QUuid>

namespace kestrow {

namespace {

bool sameId(const QString& stored, const QString& given)
{
    const QUuid id = QUuid::fromString(given);
    return !id.isNull() && QUuid::fromString(stored) == id;
}

} // namespace

std::int64_t TrashHoldings::itemsCount() const
{
    std::int64_t count = 0;
    for (const TrashedRun& trashedRun : runs)
        count += static_cast<std::int64_t>(trashedRun.items.size());
    return count;
}

std::int64_t TrashHoldings::allocatedBytes() const
{
    std::int64_t bytes = 0;
    for (const TrashedRun& trashedRun : runs)
        bytes += trashedRun.allocatedBytes;
    return bytes;
}

const AuditLogEntry* TrashHoldings::line(const QString& operationId) const
{
    for (const AuditLogEntry& entry : lines) {
        if (sameId(entry.operationId, operationId))
            return &entry;
    }
    return nullptr;
}

const TrashedRun* TrashHoldings::run(const QString& operationId) const
{
    for (const TrashedRun& trashedRun : runs) {
        if (sameId(trashedRun.line.operationId, operationId))
            return &trashedRun;
    }
    return nullptr;
}

JsonValue TrashHoldings::toJson() const
{
    JsonValue::Array runArray;
    for (const TrashedRun& trashedRun : runs) {
        if (!trashedRun.items.empty())
            runArray.push_back(trashedRun.toJson());
    }
    return JsonValue::object({
        {QStringLiteral("runs"), runArray},
        {QStringLiteral("itemsCount"), itemsCount()},
        {QStringLiteral("allocatedBytes"), allocatedBytes()},
        {QStringLiteral("otherItemsCount"), foreignCount},
        {QStringLiteral("otherAllocatedBytes"), foreignBytes},
    });
}

} // namespace kestrow
