#include "scan/UnrestrictedConditionsProvider.h"

namespace kestrow {

namespace {

class FinishedThermalStateUpdates final : public ThermalStateUpdates {
public:
    std::optional<ThermalState> next(std::stop_token) override { return std::nullopt; }
};

} // namespace

std::unique_ptr<ThermalStateUpdates> UnrestrictedConditionsProvider::thermalStateUpdates() const
{
    return std::make_unique<FinishedThermalStateUpdates>();
}

} // namespace kestrow
