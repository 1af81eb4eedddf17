#include "platform/TrashError.h"

#include "platform/SystemMessage.h"

#include <system_error>

namespace kestrow {

QString TrashError::description() const
{
    const QString start = QStringLiteral("Could not move \u201c%1\u201d to the Trash: ").arg(item);
    switch (kind) {
    case Case::unreachable:
        return start + QStringLiteral("it cannot be reached (%1).").arg(reason);
    case Case::changed:
        return start + QStringLiteral("it changed after it was checked (%1).").arg(reason);
    case Case::mountPoint:
        return start + QStringLiteral("a file system is mounted there.");
    case Case::noHome:
        return start + QStringLiteral("neither XDG_DATA_HOME nor HOME names a home folder.");
    case Case::unusableFolder:
        return start + QStringLiteral("the Trash folder %1 cannot be used (%2).").arg(place, reason);
    case Case::recordNotWritten:
        return start + QStringLiteral("writing %1 failed (%2).").arg(place, reason);
    case Case::notMoved:
        return start + QStringLiteral("moving it into %1 failed (%2).").arg(place, reason);
    case Case::noFreeName:
        return start + QStringLiteral("every name tried in %1 is taken.").arg(place);
    }
    return start + reason;
}

QString TrashError::systemText(int errorCode)
{
    return SystemMessage::of(errorCode);
}

} // namespace kestrow
