#pragma once

#include "platform/SystemCalls.h"

#include <QByteArray>

#include <vector>

namespace kestrow {

// Where the freedesktop.org Trash keeps what it took. Items on the home's file system go to
// the home Trash, $XDG_DATA_HOME/Trash; items on another file system to $topdir/.Trash/$uid
// (when an administrator made $topdir/.Trash) or else $topdir/.Trash-$uid.
class TrashLocation {
public:
    // Where the environment puts the home Trash: $XDG_DATA_HOME/Trash, or ~/.local/share/Trash
    // when XDG_DATA_HOME is unset, empty or relative. Empty when no home is named.
    [[nodiscard]] static QByteArray homeTrashPath();

    // A Trash folder, and the folder its records' relative paths start from (empty for the
    // home Trash, whose records hold absolute paths).
    struct Folder {
        QByteArray path;
        QByteArray topPath;
        friend bool operator==(const Folder&, const Folder&) = default;
    };

    // The Trash folders that may hold an item taken from `originalPath` (absolute): the home
    // Trash when the nearest folder on its way that still exists lies on the home Trash's file
    // system, else the two at the top of that folder's file system. Nothing is made or opened
    // for writing.
    [[nodiscard]] static std::vector<Folder> foldersFor(const SystemCalls& calls, const QByteArray& originalPath);
};

} // namespace kestrow
