#pragma once

#include "CommandLine.h"

namespace kestrow::cli {

// `kestrow restore OPERATION-ID | PATH...`: puts back from the Trash what a run moved there,
// or what was moved there from the given paths, never replacing anything; the restore is
// recorded in the audit log.
void setupRestoreCommand(CommandLine& commandLine);

} // namespace kestrow::cli
