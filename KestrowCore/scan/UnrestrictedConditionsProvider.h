#pragma once

#include "platform/PowerSourceProviding.h"
#include "platform/ThermalStateProviding.h"

namespace kestrow {

// Conditions that never hold a scan back: nominal, on AC, no battery, no Low Power Mode, and
// an update stream that has already finished.
class UnrestrictedConditionsProvider final : public ThermalStateProviding, public PowerSourceProviding {
public:
    [[nodiscard]] ThermalState thermalState() const override { return ThermalState::nominal; }
    [[nodiscard]] std::unique_ptr<ThermalStateUpdates> thermalStateUpdates() const override;
    [[nodiscard]] bool isACPowered() const override { return true; }
    [[nodiscard]] std::optional<double> batteryPercentage() const override { return std::nullopt; }
    [[nodiscard]] bool isLowPowerModeEnabled() const override { return false; }
};

} // namespace kestrow
