#pragma once

#include "AppsCommand.h"
#include "CommandLine.h"

#include "apps/AppFootprint.h"

#include <QString>

namespace kestrow::cli {

// Each item of the footprint with its place, size and path, the totals, and what blocks an
// uninstall, as people read it.
[[nodiscard]] QString footprintText(const AppFootprint& footprint);

// `kestrow apps footprint NAME-OR-ID`.
void setupAppsFootprintCommand(CommandLine& commandLine, CLI::App& apps);

} // namespace kestrow::cli
