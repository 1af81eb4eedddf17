#pragma once

#include "platform/ThermalStateProviding.h"

#include <QString>
#include <QStringList>

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace kestrow {

// Processor time since boot, in ticks. `nice` counts in the total and in no category.
struct CPULoadTicks {
    std::uint64_t user = 0;
    std::uint64_t system = 0;
    std::uint64_t idle = 0;
    std::uint64_t nice = 0;
};

// Memory in use, in pages of the source's page size.
struct MemoryPageCounts {
    std::int64_t appPages = 0;        // memory of processes
    std::int64_t wiredPages = 0;      // held by the kernel, never paged out
    std::int64_t compressedPages = 0; // the compressor's pool
};

// What a volume says of itself; each value may be missing.
struct VolumeCapacities {
    std::optional<std::int64_t> totalCapacity;
    std::optional<std::int64_t> availableCapacity;
    std::optional<std::int64_t> availableCapacityForImportantUsage;
    std::optional<QString> name;
};

// The description of one power source (a battery or a UPS), under the names the platform
// gives its keys: "Power Source State" ("AC Power" or "Battery Power"), "Current Capacity",
// "Max Capacity", "Is Charging", "Time to Empty" (minutes, -1 while unknown).
struct PowerSourceDescription {
    std::optional<QString> powerSourceState;
    std::optional<std::int64_t> currentCapacity;
    std::optional<std::int64_t> maxCapacity;
    std::optional<bool> isCharging;
    std::optional<std::int64_t> timeToEmpty;
};

// The raw figures of the machine, each read afresh at every call. Figures that cannot be read
// come back empty; the callers hold the fall-backs. Safe to call from any thread.
class SystemSource {
public:
    virtual ~SystemSource() = default;

    // The running machine, through its platform's own services.
    [[nodiscard]] static std::shared_ptr<const SystemSource> current();

    [[nodiscard]] virtual int activeProcessorCount() const = 0;
    [[nodiscard]] virtual std::int64_t physicalMemory() const = 0;
    [[nodiscard]] virtual std::optional<CPULoadTicks> cpuLoadTicks() const = 0;
    [[nodiscard]] virtual std::optional<std::int64_t> pageSize() const = 0;
    [[nodiscard]] virtual std::optional<MemoryPageCounts> memoryPageCounts() const = 0;
    [[nodiscard]] virtual std::optional<VolumeCapacities> volumeCapacities(const QString& volumePath) const = 0;
    // The volumes that hold the operating system itself.
    [[nodiscard]] virtual QStringList systemVolumePaths() const = 0;
    // Space used on the volume mounted at `volumePath`; nothing when that is not a volume.
    [[nodiscard]] virtual std::optional<std::int64_t> volumeSpaceUsed(const QString& volumePath) const = 0;
    // The power sources in the platform's order; an entry is empty when its description could
    // not be read, the whole list when the power information could not be read at all.
    [[nodiscard]] virtual std::optional<std::vector<std::optional<PowerSourceDescription>>>
    powerSourceDescriptions() const = 0;
    [[nodiscard]] virtual bool isLowPowerModeEnabled() const = 0;
    [[nodiscard]] virtual ThermalState thermalState() const = 0;
};

} // namespace kestrow
