#pragma once

#include "support/JsonDecoder.h"
#include "system/BatteryMetrics.h"
#include "system/CPUMetrics.h"
#include "system/DiskMetrics.h"
#include "system/MemoryMetrics.h"
#include "system/SystemThermalState.h"

#include <QDateTime>

#include <optional>

namespace kestrow {

// One snapshot of the machine.
struct SystemVitals {
    QDateTime timestamp;
    CPUMetrics cpu;
    MemoryMetrics memory;
    DiskMetrics disk;
    std::optional<BatteryMetrics> battery; // absent on a machine without one
    SystemThermalState thermalState = SystemThermalState::nominal;

    [[nodiscard]] JsonValue toJson(DateEncoding dates) const;
    friend bool operator==(const SystemVitals&, const SystemVitals&) = default;
};

} // namespace kestrow
