#include "Commands.h"

#include "ScanCommand.h"

namespace kestrow::cli {

void setupAllCommands(CommandLine& commandLine)
{
    setupScanCommand(commandLine);
}

} // namespace kestrow::cli
