#pragma once

#include "cleanup/TrashItemRecord.h"
#include "support/JsonDecoder.h"

#include <QDateTime>
#include <QUuid>

#include <cstdint>
#include <vector>

namespace kestrow {

// One pipeline run: its records in input order and the totals derived from them. A dry run
// reports what would be freed in the same fields as a real run.
class TrashSummary {
public:
    TrashSummary(QUuid operationId, bool isDryRun, bool isPermanentPurge, std::vector<TrashItemRecord> records,
                 QDateTime startedAt, QDateTime completedAt);

    [[nodiscard]] const QUuid& operationId() const { return m_operationId; }
    [[nodiscard]] bool isDryRun() const { return m_isDryRun; }
    [[nodiscard]] bool isPermanentPurge() const { return m_isPermanentPurge; }
    [[nodiscard]] int totalItemsCount() const { return static_cast<int>(m_records.size()); }
    // Records that succeeded or were simulated.
    [[nodiscard]] int successCount() const { return m_successCount; }
    [[nodiscard]] int failureCount() const { return m_failureCount; }
    [[nodiscard]] std::int64_t totalAllocatedBytesFreed() const { return m_totalAllocatedBytesFreed; }
    [[nodiscard]] std::int64_t totalLogicalBytesFreed() const { return m_totalLogicalBytesFreed; }
    [[nodiscard]] const std::vector<TrashItemRecord>& records() const { return m_records; }
    [[nodiscard]] const QDateTime& startedAt() const { return m_startedAt; }
    [[nodiscard]] const QDateTime& completedAt() const { return m_completedAt; }
    [[nodiscard]] double durationSeconds() const { return m_durationSeconds; }

    [[nodiscard]] JsonValue toJson(DateEncoding dates) const;

    friend bool operator==(const TrashSummary&, const TrashSummary&) = default;

private:
    QUuid m_operationId;
    bool m_isDryRun;
    bool m_isPermanentPurge;
    std::vector<TrashItemRecord> m_records;
    QDateTime m_startedAt;
    QDateTime m_completedAt;
    int m_successCount = 0;
    int m_failureCount = 0;
    std::int64_t m_totalAllocatedBytesFreed = 0;
    std::int64_t m_totalLogicalBytesFreed = 0;
    double m_durationSeconds = 0;
};

} // namespace kestrow
