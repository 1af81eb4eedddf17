#pragma once

#ifdef __APPLE__

#include "platform/SystemSource.h"

namespace kestrow {

// The figures of the running Mac: host statistics, NSProcessInfo, volume resource values,
// getattrlist and the IOKit power sources.
class MacSystemSource final : public SystemSource {
public:
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
};

} // namespace kestrow

#endif
