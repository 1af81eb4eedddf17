#pragma once

#include "support/JsonValue.h"

#include <cstdint>
#include <optional>

namespace kestrow {

// The first power source's charge.
struct BatteryMetrics {
    double percentage = 100;
    bool isCharging = false;
    bool isACPowered = false;
    std::optional<std::int64_t> timeRemainingMinutes;
    std::optional<double> healthPercentage; // not filled by the monitor
    std::optional<std::int64_t> cycleCount; // not filled by the monitor

    [[nodiscard]] JsonValue toJson() const; // absent values left out
    friend bool operator==(const BatteryMetrics&, const BatteryMetrics&) = default;
};

} // namespace kestrow
