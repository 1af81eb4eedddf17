#pragma once

#include "CommandLine.h"

namespace kestrow::cli {

// `kestrow mcp`: the agent server on standard input and output.
void setupMcpCommand(CommandLine& commandLine);

} // namespace kestrow::cli
