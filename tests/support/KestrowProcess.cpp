#include "KestrowProcess.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <vector>

namespace kestrow::test {

namespace {

// The status of a child that could not enter its folder or run the binary; `kestrow` itself
// never exits with it.
constexpr int startFailure = 127;

} // namespace

KestrowProcess::KestrowProcess(const QStringList& arguments, const QByteArray& input)
    : m_command(QStringLiteral("kestrow ") + arguments.join(QLatin1Char(' ')))
{
    m_process.start(QStringLiteral(KESTROW_BINARY), arguments);
    started(input);
}

std::unique_ptr<KestrowProcess> KestrowProcess::withBytes(const QList<QByteArray>& arguments,
                                                          const QByteArray& workingFolder)
{
    std::unique_ptr<KestrowProcess> run(new KestrowProcess);
    // QProcess passes arguments and the working folder on as UTF-8 and would turn a byte that
    // is not into U+FFFD's bytes. So the child, once QProcess has set up its channels, enters
    // the folder and starts the binary itself with the very bytes.
    run->m_command = QStringLiteral("kestrow ") + QString::fromUtf8(arguments.join(' '));
    QList<QByteArray> held{QByteArrayLiteral(KESTROW_BINARY)};
    held += arguments;
    std::vector<char*> argv;
    for (QByteArray& argument : held)
        argv.push_back(argument.data());
    argv.push_back(nullptr);
    run->m_process.setProgram(QStringLiteral(KESTROW_BINARY));
    run->m_process.setChildProcessModifier([&argv, &workingFolder] {
        if (!workingFolder.isEmpty() && ::chdir(workingFolder.constData()) != 0)
            ::_exit(startFailure);
        ::execv(argv[0], argv.data());
        ::_exit(startFailure);
    });
    run->m_process.start();
    run->started({});
    return run;
}

void KestrowProcess::started(const QByteArray& input)
{
    if (!m_process.waitForStarted())
        ADD_FAILURE() << m_command.toStdString() << " could not be started: " << m_process.errorString().toStdString();
    if (!input.isEmpty())
        m_process.write(input);
    m_process.closeWriteChannel();
}

KestrowProcess::~KestrowProcess()
{
    kill();
}

KestrowRun KestrowProcess::finish(int timeoutMs)
{
    if (!m_process.waitForFinished(timeoutMs) && m_process.state() != QProcess::NotRunning) {
        ADD_FAILURE() << m_command.toStdString() << " did not end within " << timeoutMs << " ms";
        kill();
    } else if (m_process.exitStatus() == QProcess::CrashExit) {
        ADD_FAILURE() << m_command.toStdString() << " crashed: " << m_process.errorString().toStdString();
    } else if (m_process.exitCode() == startFailure) {
        ADD_FAILURE() << m_command.toStdString() << " could not enter its folder or start";
    }
    return {m_process.exitCode(), QString::fromUtf8(m_process.readAllStandardOutput()),
            QString::fromUtf8(m_process.readAllStandardError())};
}

bool KestrowProcess::kill()
{
    if (m_process.state() == QProcess::NotRunning)
        return false;
    m_process.kill();
    m_process.waitForFinished();
    return true;
}

KestrowRun runKestrow(const QStringList& arguments, const QByteArray& input)
{
    return KestrowProcess(arguments, input).finish();
}

KestrowRun runKestrowWithBytes(const QList<QByteArray>& arguments, const QByteArray& workingFolder)
{
    return KestrowProcess::withBytes(arguments, workingFolder)->finish();
}

} // namespace kestrow::test
