#pragma once

#include "CommandLine.h"

namespace kestrow::cli {

// `kestrow anomalies`: heavy folders that no rule knows and that look like caches, each with
// the rule it would take; `--adopt` makes one of those rules the user's own.
void setupAnomaliesCommand(CommandLine& commandLine);

} // namespace kestrow::cli
