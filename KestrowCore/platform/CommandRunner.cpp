#include "platform/CommandRunner.h"

#include <QProcess>

namespace kestrow {

ProcessLaunchError::ProcessLaunchError(QString executable, QString reason)
    : m_executable(std::move(executable))
    , m_reason(std::move(reason))
{
}

QString ProcessLaunchError::description() const
{
    return QStringLiteral("Could not launch ") + m_executable + QStringLiteral(": ") + m_reason;
}

QByteArray CommandRunner::run(const ChildCommand& command) const
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.setStandardInputFile(QProcess::nullDevice());
    process.start(command.executable, command.arguments, QIODevice::ReadOnly);
    if (!process.waitForStarted(-1))
        throw ProcessLaunchError(command.executable, process.errorString());
    process.waitForFinished(-1);
    return process.readAll();
}

CommandResult CommandRunner::runWithStatus(const ChildCommand& command) const
{
    QProcess process;
    process.setStandardInputFile(QProcess::nullDevice());
    process.start(command.executable, command.arguments, QIODevice::ReadOnly);
    if (!process.waitForStarted(-1))
        throw ProcessLaunchError(command.executable, process.errorString());
    process.waitForFinished(-1);
    const bool exited = process.exitStatus() == QProcess::NormalExit;
    return {exited ? process.exitCode() : -1, process.readAllStandardOutput(), process.readAllStandardError()};
}

bool CommandRunner::startDetached(const ChildCommand& command) const
{
    return QProcess::startDetached(command.executable, command.arguments);
}

} // namespace kestrow
