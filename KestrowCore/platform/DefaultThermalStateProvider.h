#pragma once

#include "platform/SystemSource.h"
#include "platform/ThermalStateProviding.h"

#include <memory>

namespace kestrow {

// The machine's own thermal state. Updates follow the platform's thermal notification where it
// has one; on Linux, whose thermal zones notify nobody, the zones are read every two seconds
// and a change is passed on.
class DefaultThermalStateProvider final : public ThermalStateProviding {
public:
    explicit DefaultThermalStateProvider(std::shared_ptr<const SystemSource> source = SystemSource::current());

    [[nodiscard]] ThermalState thermalState() const override;
    [[nodiscard]] std::unique_ptr<ThermalStateUpdates> thermalStateUpdates() const override;

private:
    std::shared_ptr<const SystemSource> m_source;
};

} // namespace kestrow
