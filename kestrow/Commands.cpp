#include "Commands.h"

#include "AnomaliesCommand.h"
#include "AppsCommand.h"
#include "AppsFootprintCommand.h"
#include "AppsLeftoversCommand.h"
#include "AppsUninstallCommand.h"
#include "AuditCommand.h"
#include "CheckCommand.h"
#include "CleanCommand.h"
#include "LensCommand.h"
#include "McpCommand.h"
#include "RestoreCommand.h"
#include "RulesCommand.h"
#include "ScanCommand.h"
#include "StartupCommand.h"
#include "SweepCommand.h"
#include "TrashCommand.h"
#include "TrashEmptyCommand.h"
#include "VitalsCommand.h"

namespace kestrow::cli {

void setupAllCommands(CommandLine& commandLine)
{
    setupScanCommand(commandLine);
    setupCleanCommand(commandLine);
    setupSweepCommand(commandLine);
    setupRestoreCommand(commandLine);
    CLI::App& trash = setupTrashCommand(commandLine);
    setupTrashEmptyCommand(commandLine, trash);
    setupAuditCommand(commandLine);
    setupRulesCommand(commandLine);
    setupVitalsCommand(commandLine);
    setupCheckCommand(commandLine);
    setupLensCommand(commandLine);
    setupAnomaliesCommand(commandLine);
    CLI::App& apps = setupAppsCommand(commandLine);
    setupAppsFootprintCommand(commandLine, apps);
    setupAppsUninstallCommand(commandLine, apps);
    setupAppsLeftoversCommand(commandLine, apps);
    setupStartupCommand(commandLine);
    setupMcpCommand(commandLine);
}

} // namespace kestrow::cli
