#pragma once

#include "CommandLine.h"

namespace kestrow::cli {

// Every command of `kestrow`, each set up by its own file pair.
void setupAllCommands(CommandLine& commandLine);

} // namespace kestrow::cli
