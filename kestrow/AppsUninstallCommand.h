#pragma once

#include "AppsCommand.h"
#include "CommandLine.h"

namespace kestrow::cli {

// `kestrow apps uninstall NAME-OR-ID`.
void setupAppsUninstallCommand(CommandLine& commandLine, CLI::App& apps);

} // namespace kestrow::cli
