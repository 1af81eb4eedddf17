#pragma once

#include "cleanup/AuditLogEntry.h"
#include "cleanup/TrashedItem.h"
#include "support/JsonValue.h"

#include <QStringList>

#include <cstdint>
#include <vector>

namespace kestrow {

// A run that moved items to the Trash, by its audit line, with what of it is still there.
struct TrashedRun {
    AuditLogEntry line;
    std::vector<TrashedItem> items; // still in the Trash, in the order of the line's paths
    QStringList pathsGone;          // the line's paths with nothing of theirs left in the Trash
    std::int64_t allocatedBytes = 0;
    // Of `allocatedBytes`, what files with names outside the run's items hold: emptying the
    // Trash does not give it back.
    std::int64_t bytesHeldElsewhere = 0;

    // The line's operationId, timestamp and client, the items still there (originalPath,
    // trashPath, deletionDate as the record has it, allocatedBytes) and their total.
    [[nodiscard]] JsonValue toJson() const;
};

} // namespace kestrow
