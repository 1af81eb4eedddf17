#pragma once

#include "platform/FileManager.h"
#include "platform/FileStatus.h"
#include "platform/SystemCalls.h"
#include "platform/TrashError.h"
#include "platform/UniqueFd.h"

#include <QByteArray>

#include <memory>
#include <mutex>
#include <optional>

namespace kestrow {

// The freedesktop.org Trash: items on the home's file system go to $XDG_DATA_HOME/Trash,
// others to $topdir/.Trash/$uid (when an administrator made $topdir/.Trash, sticky) or else
// $topdir/.Trash-$uid, $topdir being where the item's mount is attached. Each item gets its
// info/NAME.trashinfo record first (created exclusively, written whole and flushed), and only
// then is renamed into files/NAME, never replacing anything there. Nothing is ever copied or
// deleted instead: on any failure the item stays where it was and no record is left behind.
// The home Trash folders stay open between items and are checked again cheaply on each use;
// one instance serves any number of threads.
class FreedesktopTrash {
public:
    explicit FreedesktopTrash(std::shared_ptr<const SystemCalls> systemCalls);

    // Moves an anchored item, which the caller has just verified, to the Trash of its mount.
    [[nodiscard]] FileOperationResult trash(const AnchoredItem& item) const;

private:
    // A Trash folder ready for filing, with its files/ and info/ held open.
    struct Folders {
        QByteArray path;    // the Trash folder itself
        QByteArray topPath; // where Path= is relative to; empty for the home Trash (absolute)
        UniqueFd folder;
        UniqueFd files;
        UniqueFd info;
        FileStatus folderStatus;
        FileStatus filesStatus;
        FileStatus infoStatus;
    };
    struct OpenedFolder {
        UniqueFd fd;
        FileStatus status;
        QString problem; // empty when the folder is open and is a real folder
    };

    // The home Trash kept open, if it is still where it was; else nothing.
    [[nodiscard]] std::shared_ptr<const Folders> cachedHomeTrash(const QByteArray& trashPath) const;
    // The home Trash opened afresh, its folders made where missing, and kept.
    [[nodiscard]] std::shared_ptr<const Folders> openHomeTrash(const QByteArray& trashPath, TrashError& error) const;
    [[nodiscard]] std::shared_ptr<const Folders> topTrash(const AnchoredItem& item, TrashError& error) const;
    [[nodiscard]] std::shared_ptr<const Folders> completed(OpenedFolder folder, const QByteArray& path,
                                                           const QByteArray& topPath, TrashError& error) const;
    [[nodiscard]] bool stillInPlace(const Folders& trash) const;
    [[nodiscard]] OpenedFolder openFolder(int at, const QByteArray& name, bool create) const;
    [[nodiscard]] UniqueFd openDataHome(const QByteArray& path, int& errorCode) const;
    // Of the nearest folder on the way to `path` that exists.
    [[nodiscard]] std::optional<FileStatus> homeFileSystem(QByteArray path) const;
    [[nodiscard]] FileOperationResult file(const AnchoredItem& item, const Folders& trash) const;
    // 0, or the errno of the rename into `files`.
    [[nodiscard]] int moveInto(const AnchoredItem& item, int files, const QByteArray& name) const;
    // 0, or the errno of the write or the flush.
    [[nodiscard]] int writeRecord(int fd, const QByteArray& content) const;

    std::shared_ptr<const SystemCalls> m_calls;
    mutable std::mutex m_mutex;
    mutable std::shared_ptr<const Folders> m_home; // guarded by m_mutex
};

} // namespace kestrow
