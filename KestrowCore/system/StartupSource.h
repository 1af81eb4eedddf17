#pragma once

#include "system/StartupItem.h"

#include <QString>

#include <vector>

namespace kestrow {

// One mechanism that starts things (launchd jobs, autostart entries, systemd units): what it
// would start, and how one of its items is turned off and on.
class StartupSource {
public:
    virtual ~StartupSource() = default;

    // In the mechanism's own order; what cannot be read is left out.
    [[nodiscard]] virtual std::vector<StartupItem> listItems() const = 0;
    // True when `item` is one of this mechanism's (judged by its file).
    [[nodiscard]] virtual bool owns(const StartupItem& item) const = 0;
    // Returns the path of what changed (or of the item, when it already was in that state).
    // Throws StartupError.
    [[nodiscard]] virtual QString toggle(const StartupItem& item, bool enable) const = 0;
};

} // namespace kestrow
