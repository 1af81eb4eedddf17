#pragma once

#include "cleanup/AuditOperationType.h"
#include "support/JsonValue.h"

#include <QString>
#include <QStringList>

#include <cstdint>
#include <optional>

namespace kestrow {

// One line of the audit log, as written: every text is kept as stored, so that verification
// hashes exactly what the line says.
struct AuditLogEntry {
    QString timestamp;   // ISO 8601 with milliseconds, never parsed back
    QString operationId; // upper-case UUID text of the run
    AuditOperationType operationType = AuditOperationType::trash;
    std::int64_t itemsCount = 0;
    std::int64_t bytesFreed = 0;
    QStringList paths; // in the order of the run; only the hash sorts them
    QString client;
    std::optional<double> durationMs;
    QString previousHash;
    QString rollingHash;

    // The line's object; the writer sorts its keys. An absent duration is left out.
    [[nodiscard]] JsonValue toJson() const;
    [[nodiscard]] static AuditLogEntry fromJson(const JsonValue& json); // throws JsonDecodingError

    friend bool operator==(const AuditLogEntry&, const AuditLogEntry&) = default;
};

} // namespace kestrow
