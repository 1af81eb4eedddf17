#include "McpCommand.h"

#include "agent/MCPServer.h"

#include <QtGlobal>

#include <cstdio>
#include <unistd.h>

namespace kestrow::cli {

namespace {

// Standard output belongs to the protocol: whatever Qt has to say goes to standard error,
// wherever its default handler would send it.
void messageToStandardError(QtMsgType type, const QMessageLogContext& context, const QString& message)
{
    const QByteArray line = qFormatLogMessage(type, context, message).toLocal8Bit() + '\n';
    std::fwrite(line.constData(), 1, static_cast<size_t>(line.size()), stderr);
}

int runMcp(const std::string& homeOption)
{
    const QString home = resolveHome(homeOption);
    qInstallMessageHandler(messageToStandardError);
    MCPServer server({.inputFd = STDIN_FILENO, .outputFd = STDOUT_FILENO}, MCPTools(home));
    // A client's number too large for a tool ends the run here, told on standard error.
    server.run();
    return exitSuccess;
}

} // namespace

void setupMcpCommand(CommandLine& commandLine)
{
    auto home = std::make_shared<std::string>();
    CLI::App* command = commandLine.app().add_subcommand(
        "mcp", "Serve AI agents over the Model Context Protocol: JSON-RPC 2.0 on standard input and output, one "
               "message per line, until the input ends or a blank line comes. Cleaning and uninstalling are dry "
               "runs unless the agent asks otherwise; every run is recorded in the audit log.");
    addHomeOption(command, *home);
    commandLine.onRun(command, [home] { return runMcp(*home); });
}

} // namespace kestrow::cli
