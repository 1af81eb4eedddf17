#include "KestrowProcess.h"

#include <QProcess>

namespace kestrow::test {

KestrowRun runKestrow(const QStringList& arguments, const QByteArray& input)
{
    QProcess process;
    process.start(QStringLiteral(KESTROW_BINARY), arguments);
    process.waitForStarted();
    if (!input.isEmpty())
        process.write(input);
    process.closeWriteChannel();
    process.waitForFinished(300000);
    return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
            QString::fromUtf8(process.readAllStandardError())};
}

} // namespace kestrow::test
