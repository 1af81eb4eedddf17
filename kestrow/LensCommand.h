#pragma once

#include "CommandLine.h"

namespace kestrow::cli {

// `kestrow lens`: where the room of a folder goes, as a tree or as a flat list of files.
void setupLensCommand(CommandLine& commandLine);

} // namespace kestrow::cli
