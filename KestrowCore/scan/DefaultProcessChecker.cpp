#include "scan/DefaultProcessChecker.h"

#include "platform/ProcessList.h"

namespace kestrow {

bool defaultProcessChecker(const QString& name)
{
    const QStringList names = ProcessList::runningProcessNames();
    for (const QString& process : names)
        if (process.contains(name, Qt::CaseInsensitive))
            return true;
    return false;
}

} // namespace kestrow
