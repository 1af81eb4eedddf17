#pragma once

#include "CommandLine.h"

namespace kestrow::cli {

// `kestrow startup`: what starts with the session or the machine, and the switch for each.
void setupStartupCommand(CommandLine& commandLine);

} // namespace kestrow::cli
