#pragma once

#include "platform/TrashEntry.h"
#include "storage/MeasuredMetrics.h"

namespace kestrow {

// An entry of the Trash that a run of Kestrow put there, as it is now.
struct TrashedItem {
    TrashEntry entry;
    MeasuredMetrics metrics; // measured in the Trash; nothing when it could not be reached
};

} // namespace kestrow
