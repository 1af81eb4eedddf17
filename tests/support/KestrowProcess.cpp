#include "KestrowProcess.h"

#include <QProcess>

#include <unistd.h>

#include <vector>

namespace kestrow::test {

namespace {

KestrowRun finish(QProcess& process, const QByteArray& input)
{
    process.waitForStarted();
    if (!input.isEmpty())
        process.write(input);
    process.closeWriteChannel();
    process.waitForFinished(300000);
    return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
            QString::fromUtf8(process.readAllStandardError())};
}

} // namespace

KestrowRun runKestrow(const QStringList& arguments, const QByteArray& input)
{
    QProcess process;
    process.start(QStringLiteral(KESTROW_BINARY), arguments);
    return finish(process, input);
}

KestrowRun runKestrowWithBytes(const QList<QByteArray>& arguments, const QByteArray& workingFolder)
{
    // QProcess passes arguments and the working folder on as UTF-8 and would turn a byte that
    // is not into U+FFFD's bytes. So the child, once QProcess has set up its channels, enters
    // the folder and starts the binary itself with the very bytes.
    QList<QByteArray> held{QByteArrayLiteral(KESTROW_BINARY)};
    held += arguments;
    std::vector<char*> argv;
    for (QByteArray& argument : held)
        argv.push_back(argument.data());
    argv.push_back(nullptr);
    QProcess process;
    process.setProgram(QStringLiteral(KESTROW_BINARY));
    process.setChildProcessModifier([&argv, &workingFolder] {
        if (!workingFolder.isEmpty() && ::chdir(workingFolder.constData()) != 0)
            ::_exit(127);
        ::execv(argv[0], argv.data());
        ::_exit(127);
    });
    process.start();
    return finish(process, {});
}

} // namespace kestrow::test
