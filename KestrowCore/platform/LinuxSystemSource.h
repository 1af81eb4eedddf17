#pragma once

#include "platform/SystemSource.h"

namespace kestrow {

// The figures of a Linux machine, read from its kernel's files: /proc/stat, /proc/meminfo,
// /sys/class/power_supply, /sys/class/thermal and the platform power profile. `root` stands
// for "/", so that a copy of those files can stand for a machine.
class LinuxSystemSource final : public SystemSource {
public:
    explicit LinuxSystemSource(QString root = QStringLiteral("/"));

    [[nodiscard]] int activeProcessorCount() const override;
    [[nodiscard]] std::int64_t physicalMemory() const override;
    [[nodiscard]] std::optional<CPULoadTicks> cpuLoadTicks() const override;
    [[nodiscard]] std::optional<std::int64_t> pageSize() const override;
    [[nodiscard]] std::optional<MemoryPageCounts> memoryPageCounts() const override;
    [[nodiscard]] std::optional<VolumeCapacities> volumeCapacities(const QString& volumePath) const override;
    [[nodiscard]] QStringList systemVolumePaths() const override;
    [[nodiscard]] std::optional<std::int64_t> volumeSpaceUsed(const QString& volumePath) const override;
    [[nodiscard]] std::optional<std::vector<std::optional<PowerSourceDescription>>>
    powerSourceDescriptions() const override;
    [[nodiscard]] bool isLowPowerModeEnabled() const override;
    [[nodiscard]] ThermalState thermalState() const override;

private:
    [[nodiscard]] QString file(const QString& path) const;

    QString m_root;
};

} // namespace kestrow
