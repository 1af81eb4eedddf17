#pragma once

#include "platform/PowerSourceProviding.h"
#include "platform/SystemSource.h"

#include <memory>

namespace kestrow {

// The machine's own power conditions, read afresh at every call.
class DefaultPowerSourceProvider final : public PowerSourceProviding {
public:
    explicit DefaultPowerSourceProvider(std::shared_ptr<const SystemSource> source = SystemSource::current());

    // The first source that says "AC Power" or "Battery Power" decides; without one, true.
    [[nodiscard]] bool isACPowered() const override;
    // The first source's "Current Capacity", taken as a percentage as it stands.
    [[nodiscard]] std::optional<double> batteryPercentage() const override;
    [[nodiscard]] bool isLowPowerModeEnabled() const override;

private:
    std::shared_ptr<const SystemSource> m_source;
};

} // namespace kestrow
