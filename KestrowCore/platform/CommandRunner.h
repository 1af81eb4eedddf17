#pragma once

#include "support/KestrowError.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace kestrow {

// A fixed system command: an absolute executable and its arguments, never a shell line.
struct ChildCommand {
    QString executable;
    QStringList arguments;

    friend bool operator==(const ChildCommand&, const ChildCommand&) = default;
};

// The platform's refusal to start a child process.
class ProcessLaunchError : public KestrowError {
public:
    ProcessLaunchError(QString executable, QString reason);
    [[nodiscard]] QString description() const override;

private:
    QString m_executable;
    QString m_reason;
};

// How a command that ran ended: its exit status (-1 when it crashed) and its two streams.
struct CommandResult {
    int exitStatus = 0;
    QByteArray standardOutput;
    QByteArray standardError;
};

// Runs child processes. Tests replace it to see what would run.
class CommandRunner {
public:
    virtual ~CommandRunner() = default;
    // Waits for the command to end and gives its standard output and error, merged in one
    // stream. The exit status is not looked at. Throws ProcessLaunchError.
    [[nodiscard]] virtual QByteArray run(const ChildCommand& command) const;
    // Waits for the command to end, for callers that read its status and its output apart
    // from its complaints. Throws ProcessLaunchError.
    [[nodiscard]] virtual CommandResult runWithStatus(const ChildCommand& command) const;
    // Starts the command without waiting for it; false when it could not be launched.
    virtual bool startDetached(const ChildCommand& command) const;
};

} // namespace kestrow
