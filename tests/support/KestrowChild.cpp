#include "KestrowChild.h"

namespace kestrow::test {

std::unique_ptr<QProcess> startKestrow(const QStringList& arguments)
{
    auto process = std::make_unique<QProcess>();
    process->start(QStringLiteral(KESTROW_BINARY), arguments);
    process->waitForStarted();
    process->closeWriteChannel();
    return process;
}

} // namespace kestrow::test
