#pragma once

#include "CommandLine.h"

namespace kestrow::cli {

// `kestrow clean PATH...`: moves the given paths to the Trash (or deletes them for good with
// `--permanent --yes`), each checked by the sandbox, the run recorded in the audit log.
void setupCleanCommand(CommandLine& commandLine);

} // namespace kestrow::cli
