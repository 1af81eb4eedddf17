#include "platform/TrashEntryError.h"

namespace kestrow {

QString TrashEntryError::description() const
{
    const QString start = QStringLiteral("Could not put \u201c%1\u201d back: ").arg(original);
    const QString stays = QStringLiteral(" It stays in the Trash as \u201c%1\u201d.").arg(trashPath);
    switch (kind) {
    case Case::notInTrash:
        return start + QStringLiteral("nothing that Kestrow moved to the Trash from there is left in it.");
    case Case::unusableRecord:
        return start + QStringLiteral("its Trash record does not hold a plain absolute path.") + stays;
    case Case::unreachable:
        return start + QStringLiteral("the folder it came from cannot be opened or made (%1).").arg(reason) + stays;
    case Case::changed:
        return start + QStringLiteral("the Trash entry changed after it was listed (%1).").arg(reason) + stays;
    case Case::occupied:
        return start + QStringLiteral("something else stands there now and is never replaced.") + stays;
    case Case::noExclusiveMove:
        return start + QStringLiteral("its file system cannot move an item without replacing what is in the way.") +
               stays;
    case Case::notMoved:
        return start + QStringLiteral("moving it out of the Trash failed (%1).").arg(reason) + stays;
    case Case::recordNotRemoved:
        return QStringLiteral("\u201c%1\u201d is back, but its Trash record %2 could not be removed (%3).")
            .arg(original, trashPath, reason);
    case Case::recordLeftBehind:
        return QStringLiteral("\u201c%1\u201d is deleted, but its Trash record %2 could not be removed (%3).")
            .arg(original, trashPath, reason);
    }
    return start + reason;
}

} // namespace kestrow
