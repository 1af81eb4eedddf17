#pragma once

#include "CommandLine.h"

namespace kestrow::cli {

// `kestrow sweep`: scans afresh and moves every item the scan found safe to the Trash, after
// asking (or with --yes), in one recorded run.
void setupSweepCommand(CommandLine& commandLine);

} // namespace kestrow::cli
