#include "Commands.h"

#include <QCoreApplication>

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    kestrow::cli::CommandLine commandLine;
    kestrow::cli::setupAllCommands(commandLine);
    return commandLine.run(argc, argv);
}
