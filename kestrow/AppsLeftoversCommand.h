#pragma once

#include "AppsCommand.h"
#include "CommandLine.h"

namespace kestrow::cli {

// `kestrow apps leftovers [--clean]`.
void setupAppsLeftoversCommand(CommandLine& commandLine, CLI::App& apps);

} // namespace kestrow::cli
