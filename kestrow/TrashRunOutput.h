#pragma once

#include "cleanup/TrashSummary.h"

#include <QString>

#include <cstdint>

namespace kestrow::cli {

// "1 item", "3 items".
[[nodiscard]] QString countedItems(std::int64_t count);

// Prints a run (its JSON form, or one line per item with the reason under a failure, then
// what was freed) and returns the exit status: failure when any item failed.
int reportTrashRun(const TrashSummary& summary, bool json);

} // namespace kestrow::cli
