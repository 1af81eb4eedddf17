#include "cleanup/TrashSummary.h"

#include "storage/DiscoveredItem.h"

namespace kestrow {

TrashSummary::TrashSummary(QUuid operationId, bool isDryRun, bool isPermanentPurge,
                           std::vector<TrashItemRecord> records, QDateTime startedAt, QDateTime completedAt)
    : m_operationId(operationId)
    , m_isDryRun(isDryRun)
    , m_isPermanentPurge(isPermanentPurge)
    , m_records(std::move(records))
    , m_startedAt(std::move(startedAt))
    , m_completedAt(std::move(completedAt))
    , m_durationSeconds(static_cast<double>(m_startedAt.msecsTo(m_completedAt)) / 1000.0)
{
    for (const TrashItemRecord& record : m_records) {
        if (record.status.countsAsFreed()) {
            ++m_successCount;
            m_totalAllocatedBytesFreed += record.allocatedBytes;
            m_totalLogicalBytesFreed += record.logicalBytes;
        } else if (record.status == TrashItemStatus::failed) {
            ++m_failureCount;
        }
    }
}

JsonValue TrashSummary::toJson(DateEncoding dates) const
{
    JsonValue::Array recordArray;
    recordArray.reserve(m_records.size());
    for (const TrashItemRecord& record : m_records)
        recordArray.push_back(record.toJson());
    return JsonValue::object({
        {QStringLiteral("operationId"), uuidText(m_operationId)},
        {QStringLiteral("isDryRun"), m_isDryRun},
        {QStringLiteral("isPermanentPurge"), m_isPermanentPurge},
        {QStringLiteral("totalItemsCount"), totalItemsCount()},
        {QStringLiteral("successCount"), m_successCount},
        {QStringLiteral("failureCount"), m_failureCount},
        {QStringLiteral("totalAllocatedBytesFreed"), m_totalAllocatedBytesFreed},
        {QStringLiteral("totalLogicalBytesFreed"), m_totalLogicalBytesFreed},
        {QStringLiteral("records"), recordArray},
        {QStringLiteral("startedAt"), JsonDecoder::encodeDate(m_startedAt, dates)},
        {QStringLiteral("completedAt"), JsonDecoder::encodeDate(m_completedAt, dates)},
        {QStringLiteral("durationSeconds"), m_durationSeconds},
    });
}

} // namespace kestrow
