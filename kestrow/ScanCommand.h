#pragma once

#include "CommandLine.h"

namespace kestrow::cli {

// `kestrow scan`: finds what can be cleaned below a home and tiers it.
void setupScanCommand(CommandLine& commandLine);

} // namespace kestrow::cli
