#pragma once

#include "CommandLine.h"

namespace kestrow::cli {

// `kestrow vitals`: processor, memory, disk, battery and thermal state, once or on a beat.
void setupVitalsCommand(CommandLine& commandLine);

} // namespace kestrow::cli
