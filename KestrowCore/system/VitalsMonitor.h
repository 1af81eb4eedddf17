#pragma once

#include "platform/SystemSource.h"
#include "system/SystemVitals.h"

#include <memory>

namespace kestrow {

// Takes snapshots of the machine. It keeps no state and never fails: every figure the
// platform cannot give has a fixed fall-back. No snapshot walks the file system.
class VitalsMonitor {
public:
    explicit VitalsMonitor(std::shared_ptr<const SystemSource> source = SystemSource::current());

    // Processor, memory, the disk at "/", battery, thermal state, and the time of taking.
    [[nodiscard]] SystemVitals getSystemVitals() const;
    // Load averaged since boot, from one reading of the tick counters.
    [[nodiscard]] CPUMetrics getCPUMetrics() const;
    [[nodiscard]] MemoryMetrics getMemoryMetrics() const;
    [[nodiscard]] DiskMetrics getDiskMetrics(const QString& volumeURL) const;
    // Nothing on a machine without a power source.
    [[nodiscard]] std::optional<BatteryMetrics> getBatteryMetrics() const;
    // Space used by the operating system's own volumes.
    [[nodiscard]] std::int64_t getSystemVolumeBytes() const;

private:
    std::shared_ptr<const SystemSource> m_source;
};

} // namespace kestrow
