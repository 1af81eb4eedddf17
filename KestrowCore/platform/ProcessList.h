#pragma once

#include <QString>
#include <QStringList>

#include <cstdint>
#include <vector>

namespace kestrow {

// A process now running, under the name the platform reports for it.
struct RunningProcess {
    std::int64_t processId = 0;
    QString name;
};

// The processes now running, as the platform reports them. Processes whose name cannot be
// read are left out.
class ProcessList {
public:
    [[nodiscard]] static std::vector<RunningProcess> runningProcesses();
    [[nodiscard]] static QStringList runningProcessNames();
};

} // namespace kestrow
