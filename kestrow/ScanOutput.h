#pragma once

#include "storage/ScanResult.h"

namespace kestrow::cli {

// Prints a scan: its JSON form, or a table of the items by category, then the totals, a note
// when some items could not be read whole, and the scan's warnings.
void reportScan(const ScanResult& result, bool json);

} // namespace kestrow::cli
