#pragma once

#include "CommandLine.h"

namespace kestrow::cli {

// `kestrow rules`: lists the cleanup rules and adds, removes, enables and disables the
// user's own, which are kept in ~/.kestrow/rules.json.
void setupRulesCommand(CommandLine& commandLine);

} // namespace kestrow::cli
