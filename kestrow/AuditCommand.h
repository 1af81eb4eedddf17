#pragma once

#include "CommandLine.h"

namespace kestrow::cli {

// `kestrow audit log` lists what the audit log recorded; `kestrow audit verify` walks its
// hash chain and names the first broken line.
void setupAuditCommand(CommandLine& commandLine);

} // namespace kestrow::cli
