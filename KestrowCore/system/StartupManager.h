#pragma once

#include "platform/CommandRunner.h"
#include "platform/FileManager.h"
#include "system/StartupItem.h"
#include "system/StartupLocations.h"
#include "system/StartupSource.h"

#include <memory>
#include <vector>

namespace kestrow {

// What starts with the machine or the session: launchd's jobs, the desktop's autostart entries
// and systemd's units, each rated by its likely impact and checked for a missing program; and
// the switch that turns one off or on. A disabled item stays listed, so it can be turned on
// again. Holds no state between calls; its commands block, so call it off the interface thread.
class StartupManager {
public:
    explicit StartupManager(const StartupLocations& locations,
                            std::shared_ptr<const FileManager> fileManager = std::make_shared<FileManager>(),
                            std::shared_ptr<const CommandRunner> runner = std::make_shared<CommandRunner>());

    // launchd's user agents, system agents and daemons, then the user's and the machine's
    // autostart entries, then systemd's user units and system services; sorted by impact,
    // highest (`unknown`) first, items of equal impact in that order.
    [[nodiscard]] std::vector<StartupItem> listItems() const;
    // Turns `item` on or off as its mechanism does, and returns the path of what changed; an
    // item already in that state is left alone and its own path returned. Throws StartupError.
    [[nodiscard]] QString toggle(const StartupItem& item, bool enable) const;

private:
    std::vector<std::unique_ptr<const StartupSource>> m_sources;
};

} // namespace kestrow
