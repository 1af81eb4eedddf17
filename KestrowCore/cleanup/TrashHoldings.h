#pragma once

#include "cleanup/AuditLogEntry.h"
#include "cleanup/TrashedRun.h"

#include <QString>

#include <cstdint>
#include <optional>
#include <vector>

namespace kestrow {

// What the Trash holds, told apart by who put it there: Kestrow's runs, matched through the
// audit log, and everything else.
struct TrashHoldings {
    std::vector<AuditLogEntry> lines; // the whole audit log, in file order
    std::vector<TrashedRun> runs;     // every "trash" line, in log order, the emptied ones too
    std::int64_t foreignCount = 0;    // entries that no run of Kestrow's put there
    std::int64_t foreignBytes = 0;

    // Items of Kestrow's runs still in the Trash, and their bytes.
    [[nodiscard]] std::int64_t itemsCount() const;
    [[nodiscard]] std::int64_t allocatedBytes() const;
    // The line with this operationId (upper or lower case, with or without braces); nothing
    // when the log has none.
    [[nodiscard]] const AuditLogEntry* line(const QString& operationId) const;
    [[nodiscard]] const TrashedRun* run(const QString& operationId) const;

    // The runs with items still in the Trash, and the count and bytes of other programs'.
    [[nodiscard]] JsonValue toJson() const;
};

} // namespace kestrow
