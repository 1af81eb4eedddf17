#pragma once

#include "platform/CommandRunner.h"
#include "platform/FileManager.h"
#include "platform/HostSystem.h"

#include <QString>

#include <cstdint>
#include <memory>

namespace kestrow {

// The Tune-Up tasks: fixed system commands, run as child processes, whose text comes back.
// Each blocks until its command ends, so call it off the interface thread. A command that
// cannot be launched throws ProcessLaunchError; one that runs counts as done whatever its
// status. Where the system has no such command, the task says so in its text.
class MaintenanceTasks {
public:
    explicit MaintenanceTasks(HostSystem system = currentHostSystem(),
                              std::shared_ptr<const CommandRunner> runner = std::make_shared<CommandRunner>(),
                              std::shared_ptr<const FileManager> fileManager = std::make_shared<FileManager>());

    [[nodiscard]] QString flushDNSCache() const;
    // Asks for `targetGigabytes` decimal gigabytes of purgeable space back.
    [[nodiscard]] QString freePurgeableSpace(std::int64_t targetGigabytes) const;
    [[nodiscard]] QString triggerSpotlightReindex(const QString& volumePath) const;
    // The indexer's one-line status, trimmed.
    [[nodiscard]] QString getSpotlightStatus(const QString& volumePath) const;

private:
    HostSystem m_system;
    std::shared_ptr<const CommandRunner> m_runner;
    std::shared_ptr<const FileManager> m_fileManager;
};

} // namespace kestrow
