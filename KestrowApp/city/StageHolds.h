#pragma once

#include <array>
#include <cstddef>
#include <optional>

namespace kestrow {

// Minimum times on stage. A run of half a second must still show for some seconds, so each kind
// of activity, once it starts, keeps its act on stage until its hold ends.
class StageHolds {
public:
    enum class Kind { scan, disk, apps, analyze };
    static constexpr std::size_t kindCount = 4;

    // Seconds: "scan" 5.0, "disk" 6.0, "apps" 4.5, "analyze" 4.5.
    [[nodiscard]] static double minOnStage(Kind kind);

    // The activity started: its hold runs from `now`.
    void raise(Kind kind, double now);
    [[nodiscard]] bool isHeld(Kind kind, double now) const;
    [[nodiscard]] bool anyHeld(double now) const;
    [[nodiscard]] std::optional<double> holdUntil(Kind kind) const;

private:
    std::array<std::optional<double>, kindCount> m_holdUntil;
};

} // namespace kestrow
