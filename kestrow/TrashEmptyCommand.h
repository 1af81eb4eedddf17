#pragma once

#include "CommandLine.h"

namespace kestrow::cli {

// `kestrow trash empty`: deletes for good what Kestrow's runs moved to the Trash (all of it,
// a run's, or what went there more than some days ago), as a purge recorded in the audit log;
// other programs' items are never touched.
void setupTrashEmptyCommand(CommandLine& commandLine, CLI::App& trash);

} // namespace kestrow::cli
