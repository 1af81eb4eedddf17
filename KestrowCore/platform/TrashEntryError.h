#pragma once

#include <QString>

namespace kestrow {

// Why an item of the Trash was not put back where it came from (the item then stays in the
// Trash), or why its record outlived it.
struct TrashEntryError {
    enum class Case {
        notInTrash,       // nothing Kestrow moved to the Trash from that path is left there
        unusableRecord,   // the record's path is not an absolute path of plain components
        unreachable,      // the folder it came from cannot be opened or made
        changed,          // the Trash entry is no longer the one that was listed
        occupied,         // something else stands at the original path now
        noExclusiveMove,  // the file system cannot move without replacing what is in the way
        notMoved,         // the move out of the Trash failed
        recordNotRemoved, // the item is back, but its record stays in the Trash
        recordLeftBehind, // the item is deleted for good, but its record stays in the Trash
    };

    Case kind;
    QString original;  // where the item came from; the item in the Trash for recordLeftBehind
    QString trashPath; // where it is (or was) in the Trash; its record for the last two cases
    QString reason;    // what went wrong, in words, where there is more to say

    [[nodiscard]] QString description() const;
};

} // namespace kestrow
