#pragma once

#include <QStringList>

namespace kestrow {

// Names of the processes now running, as the platform reports them. Processes whose name
// cannot be read are left out.
class ProcessList {
public:
    [[nodiscard]] static QStringList runningProcessNames();
};

} // namespace kestrow
