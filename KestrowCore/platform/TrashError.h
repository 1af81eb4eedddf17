#pragma once

#include <QString>

namespace kestrow {

// Why an item was not moved to the Trash. The item stays where it was in every case.
struct TrashError {
    enum class Case {
        unreachable,      // the path could not be opened down to the item
        changed,          // the name no longer holds the item that was checked
        mountPoint,       // a file system is mounted on the item
        noHome,           // the environment names no home folder for the home Trash
        unusableFolder,   // a Trash folder could not be made or opened, or is not a folder of ours
        recordNotWritten, // the .trashinfo record could not be written
        notMoved,         // the move into the Trash's files folder failed
        noFreeName,       // every name tried in the Trash is taken
    };

    Case kind;
    QString item;   // the item's path
    QString place;  // the Trash folder or record concerned, where there is one
    QString reason; // what went wrong there, in words

    [[nodiscard]] QString description() const;

    // The system's text for an errno.
    [[nodiscard]] static QString systemText(int errorCode);
};

} // namespace kestrow
