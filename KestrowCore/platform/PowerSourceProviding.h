#pragma once

#include <optional>

namespace kestrow {

// Where the power conditions come from. Implementations may be called from any thread.
class PowerSourceProviding {
public:
    virtual ~PowerSourceProviding() = default;
    // A machine without a battery counts as on AC.
    [[nodiscard]] virtual bool isACPowered() const = 0;
    // 0 to 100; nothing when no source reports a charge.
    [[nodiscard]] virtual std::optional<double> batteryPercentage() const = 0;
    [[nodiscard]] virtual bool isLowPowerModeEnabled() const = 0;
};

} // namespace kestrow
