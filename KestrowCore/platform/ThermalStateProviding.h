#pragma once

#include <memory>
#include <optional>
#include <stop_token>

namespace kestrow {

// The machine's thermal pressure, numbered as the platform numbers it (0 to 3).
enum class ThermalState : int { nominal = 0, fair = 1, serious = 2, critical = 3 };

// One subscription to changes of the thermal state.
class ThermalStateUpdates {
public:
    virtual ~ThermalStateUpdates() = default;
    // Blocks until the state changes and gives the new one. Gives nothing once the stream has
    // finished for good, or as soon as `stop` is requested.
    [[nodiscard]] virtual std::optional<ThermalState> next(std::stop_token stop) = 0;
};

// Where the thermal state comes from. Implementations may be called from any thread.
class ThermalStateProviding {
public:
    virtual ~ThermalStateProviding() = default;
    [[nodiscard]] virtual ThermalState thermalState() const = 0;
    // A new subscription of the caller's own.
    [[nodiscard]] virtual std::unique_ptr<ThermalStateUpdates> thermalStateUpdates() const = 0;
};

} // namespace kestrow
