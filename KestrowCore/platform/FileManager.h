#pragma once

#include "platform/FileStatus.h"

#include <QString>

#include <optional>
#include <stop_token>
#include <vector>

namespace kestrow {

// Receives what a deep walk sees. The walker calls it on the walking thread.
class WalkSink {
public:
    virtual ~WalkSink() = default;
    // A regular file below the root (never through a symbolic link).
    virtual void regularFile(const FileStatus& status) = 0;
    // A folder below the root (or the root itself) that could not be read; the walk goes on.
    virtual void unreadableDirectory(const QString& path, int errorCode) = 0;
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

// All file system access of the core goes through one of these, handed in at construction,
// so that tests can inject refusals that bite even for root. The default is the real disk.
class FileManager {
public:
    virtual ~FileManager() = default;

    // lstat of the path itself, or, with `followLinks`, stat of what it leads to.
    [[nodiscard]] virtual std::optional<FileStatus> status(const QString& path, bool followLinks = false) const;
    // Existence and kind, following links as an ordinary open would.
    [[nodiscard]] virtual bool fileExists(const QString& path, bool* isDirectory = nullptr) const;
    // One level, sorted by name; hidden entries (leading ".") left out when `skipHidden`.
    [[nodiscard]] virtual DirectoryListing contentsOfDirectory(const QString& path, bool skipHidden) const;
    // Every regular file below `root`, hidden ones included, never entering a symbolic link.
    // Stops early, quietly, when `stop` is requested.
    virtual void walk(const QString& root, WalkSink& sink, std::stop_token stop = {}) const;
    // Moves the item (a link itself, never what it leads to) to the user's Trash, from where
    // the desktop can put it back: the freedesktop.org Trash on Linux, the Finder's on macOS.
    // Never deletes instead.
    [[nodiscard]] virtual FileOperationResult trashItem(const QString& path) const;
    // Deletes the item for good, a folder with all it holds; links are removed, not followed.
    // Stops at the first thing that cannot go and names it.
    [[nodiscard]] virtual FileOperationResult removeItem(const QString& path) const;
};

} // namespace kestrow
