#pragma once

#include "platform/CommandRunner.h"
#include "platform/FileManager.h"
#include "platform/HostSystem.h"

#include <QString>

#include <memory>

namespace kestrow {

// Whether the application may read the folders the system guards for privacy (Full Disk
// Access), and the way to the settings pane that grants it. Linux guards no such folders, so
// there access counts as granted.
class FDAChecker {
public:
    explicit FDAChecker(QString homeURL, HostSystem system = currentHostSystem(),
                        std::shared_ptr<const FileManager> fileManager = std::make_shared<FileManager>(),
                        std::shared_ptr<const CommandRunner> runner = std::make_shared<CommandRunner>());

    // Lists the first guarded folder of the home that exists; true when that works or when
    // none exists. Asked afresh at every call.
    [[nodiscard]] bool hasFullDiskAccess() const;
    [[nodiscard]] static QString settingsURL();
    // Opens the settings pane without waiting; a failure is ignored.
    void openSystemSettings() const;

private:
    QString m_homeURL;
    HostSystem m_system;
    std::shared_ptr<const FileManager> m_fileManager;
    std::shared_ptr<const CommandRunner> m_runner;
};

} // namespace kestrow
