#pragma once

#include "CommandLine.h"

namespace kestrow::cli {

// `kestrow check`: tells for each path whether the sandbox would let it be removed and how
// the risk classifier would tier it. Changes nothing.
void setupCheckCommand(CommandLine& commandLine);

} // namespace kestrow::cli
