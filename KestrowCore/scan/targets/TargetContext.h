#pragma once

#include "platform/FileManager.h"
#include "platform/HostSystem.h"
#include "platform/XdgBaseFolders.h"
#include "scan/TargetScan.h"

#include <QStringList>

#include <functional>
#include <memory>

namespace kestrow {

// What a target scanner may know of the machine: the system it runs on, the home and its XDG
// folders, where applications and projects live, the file system and the running processes.
// Fixed for the life of a stage.
struct TargetContext {
    QString homeURL;
    QStringList applicationsURLs;
    QStringList projectRoots;
    std::shared_ptr<const FileManager> fileManager;
    std::function<bool(const QString&)> isProcessRunning;
    XdgBaseFolders xdg = {}; // empty: the defaults below the home
    HostSystem hostSystem = currentHostSystem();

    [[nodiscard]] bool isLinux() const { return hostSystem == HostSystem::gnuLinux; }

    // Paths beginning with "/" stand as they are; those below ".cache", ".config" and
    // ".local/share" hang on the XDG folder they name; others hang on the home.
    [[nodiscard]] QString home(const QString& relative) const;

    // If `whole.path` exists, lists it (hidden entries left out when `skipHidden`) and hands
    // each entry with its path to `forEntry`; when the listing fails or is empty, the folder
    // as a whole becomes the item `whole` if it has content.
    void forEntriesOrWhole(TargetScan& scan, const TargetScan::Location& whole,
                           const std::function<void(const DirectoryEntry& entry, const QString& path)>& forEntry,
                           bool skipHidden = true) const;
};

} // namespace kestrow
