#pragma once

#include "platform/FileStatus.h"
#include "platform/SystemCalls.h"
#include "platform/UniqueFd.h"

#include <QByteArray>
#include <QString>

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <vector>

namespace kestrow {

class FreedesktopTrash;
class WalkCrew;

// Receives what a deep walk sees. A walk on several threads gives each thread a part of the
// sink of its own, made by `split`, and joins the parts into the sink at the end; a sink that
// cannot be split sees the whole walk on the calling thread.
class WalkSink {
public:
    virtual ~WalkSink() = default;
    // A regular file below the root (never through a symbolic link).
    virtual void regularFile(const FileStatus& status) = 0;
    // A folder below the root (or the root itself) that could not be read; the walk goes on.
    virtual void unreadableDirectory(const QString& path, int errorCode) = 0;
    // A folder below the root where another file system (or a bind mount) is attached. Only
    // walks that stay on the root's mount report these; they do not enter them.
    virtual void mountPoint(const QString& path) { (void)path; }
    // A new, empty part of this sink for another thread of the walk, or null when this sink
    // must see all of the walk itself. Called before the walk starts.
    [[nodiscard]] virtual std::unique_ptr<WalkSink> split() const { return nullptr; }
    // Takes in what `part`, made by `split`, saw. Called once per part when the walk is over.
    virtual void join(WalkSink& part) { (void)part; }
};

// How a deep walk may go about it.
struct WalkOptions {
    // Threads that may walk at once, the caller's included; folders are shared out only with
    // a sink that splits.
    std::size_t threads = 1;
    // Called on a walking thread before each folder is listed, from several at once in a walk
    // on several threads; false ends the walk. Lets the caller hold a walk back.
    std::function<bool()> pace;
    // False passes over every folder below the root that is a bundle (BundleFolders), as if it
    // held nothing; the root itself is always walked.
    bool entersBundles = true;
    // Walks as the thread `worker` of `crew` instead of on threads of its own: the crew's other
    // threads take folders of it as they come free, and the crew's stop ends it.
    WalkCrew* crew = nullptr;
    std::size_t worker = 0;

    // As many threads as the machine has processors.
    [[nodiscard]] static WalkOptions allProcessors();
};

struct DirectoryEntry {
    QString name;
    bool isDirectory = false; // a link to a folder is not a folder here
    bool isSymbolicLink = false;
};

struct DirectoryListing {
    std::vector<DirectoryEntry> entries;
    int errorCode = 0; // errno of the failure to open or read; 0 on success
    [[nodiscard]] bool ok() const { return errorCode == 0; }
};

// What a call that changes the disk did. On failure `errorDescription` is the system's text.
struct FileOperationResult {
    bool succeeded = false;
    std::optional<QString> resultingPath; // where a trashed item went, when the platform says
    QString errorDescription;
};

// An item opened for acting on: the folder that holds it, reached from "/" one component at a
// time without following a link, the item's name in it, and what the item was when it was
// opened. Acting through `parent` and `name` reaches this object and no other, whatever
// happens meanwhile to the path text above it. Move-only.
struct AnchoredItem {
    UniqueFd parent;
    QByteArray name;   // native bytes, one component
    QString path;      // the absolute path `parent` was reached by, with the name
    FileStatus status; // of the item itself (a link is the link), taken when anchored
};

// What `anchor` gave: the item, or the errno of the component that could not be opened
// (ENOENT: nothing there; ELOOP or ENOTDIR: a link or a file where a folder should be).
struct AnchorOutcome {
    std::optional<AnchoredItem> item;
    int errorCode = 0;
};

// All file system access of the core goes through one of these, handed in at construction,
// so that tests can inject refusals that bite even for root. The default is the real disk.
// Paths are text in the lossless form of NativePath.
class FileManager {
public:
    explicit FileManager(std::shared_ptr<const SystemCalls> systemCalls = SystemCalls::real());
    virtual ~FileManager() = default;

    [[nodiscard]] const SystemCalls& systemCalls() const { return *m_systemCalls; }

    // Opens the folder holding `path` (absolute, its folders free of links) from "/" without
    // following any link, and looks at the item there without following it either.
    [[nodiscard]] virtual AnchorOutcome anchor(const QString& path) const;
    // The folder at `folderPath` (absolute), opened from "/" one component at a time without
    // following a link; with `createMissing`, absent folders on the way are made. Not open on
    // failure, with `errorCode` set (ELOOP or ENOTDIR: a link or a file on the way).
    [[nodiscard]] UniqueFd openFolderWithoutLinks(const QByteArray& folderPath, bool createMissing,
                                                  int& errorCode) const;
    // 0 when the name in `item.parent` still holds the object that was anchored; else the
    // errno (ENOENT when it went, ESTALE when another object took its place).
    [[nodiscard]] int verifyAnchored(const AnchoredItem& item) const;

    // lstat of the path itself, or, with `followLinks`, stat of what it leads to.
    [[nodiscard]] virtual std::optional<FileStatus> status(const QString& path, bool followLinks = false) const;
    // Existence and kind, following links as an ordinary open would.
    [[nodiscard]] virtual bool fileExists(const QString& path, bool* isDirectory = nullptr) const;
    // One level, sorted by name; hidden entries (leading ".") left out when `skipHidden`.
    [[nodiscard]] virtual DirectoryListing contentsOfDirectory(const QString& path, bool skipHidden) const;
    // Every regular file below `root`, hidden ones included, never entering a symbolic link,
    // the root included (a link there is reported as an unreadable root); other mounts below
    // are entered. However deep the tree, a bounded number of folders is held open. Stops
    // early, quietly, when `stop` is requested.
    virtual void walk(const QString& root, WalkSink& sink, std::stop_token stop = {},
                      const WalkOptions& options = {}) const;
    // Moves the item (a link itself, never what it leads to) to the user's Trash, from where
    // the desktop can put it back: the freedesktop.org Trash on Linux, the Finder's on macOS.
    // Never deletes instead; an item that cannot go stays where it is, and the description says
    // what went wrong and where. The path is anchored first, so a link among its folders fails.
    [[nodiscard]] virtual FileOperationResult trashItem(const QString& path) const;
    // Deletes the item for good, a folder with all it holds: anchors `path` and removes the
    // anchored item as below. A path that cannot be anchored fails with the system's text.
    [[nodiscard]] virtual FileOperationResult removeItem(const QString& path) const;

    // The same, on an anchored item: each first checks that the name still holds the anchored
    // object and fails the item otherwise. The walk stays on the item's mount and reports the
    // mount points it meets. The removal takes a link itself, never what it leads to, and
    // never crosses a mount: an item that is a mount point or holds one anywhere below is
    // left untouched. It stops at the first thing that cannot go and names it.
    virtual void walk(const AnchoredItem& item, WalkSink& sink, std::stop_token stop = {},
                      const WalkOptions& options = {}) const;
    [[nodiscard]] virtual FileOperationResult trashItem(const AnchoredItem& item) const;
    [[nodiscard]] virtual FileOperationResult removeItem(const AnchoredItem& item) const;

    // What `readRegularFile` read.
    struct RegularFileRead {
        QByteArray bytes;
        int errorCode = 0;        // errno of the failure; 0 when the bytes were read
        bool opened = false;      // the file was opened, so a failure came while reading it
        QString errorDescription; // the system's text, or why the file was not opened
    };
    // At most `maxBytes` from the start of the file at `path`, read only when it is a regular
    // file: a folder, FIFO, socket or device is never opened for reading, so nothing waits on
    // a writer that never comes. Without `followLinks` a symbolic link at the last component is
    // refused too (ELOOP, as the system answers).
    [[nodiscard]] virtual RegularFileRead readRegularFile(const QString& path, qsizetype maxBytes,
                                                          bool followLinks = false) const;

private:
    std::shared_ptr<const SystemCalls> m_systemCalls;
#if !defined(__APPLE__)
    std::shared_ptr<const FreedesktopTrash> m_trash; // keeps the home Trash open between items
#endif
};

} // namespace kestrow
