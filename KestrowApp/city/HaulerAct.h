#pragma once

#include <array>
#include <optional>

namespace kestrow {

// The hauler's part in a Sweep: a stack of crates at the Trash dock, and trips that each take
// one crate, carry it across and toss it into the dumpster. Each disk scan finds a full stack.
class HaulerAct {
public:
    static constexpr int stackCrates = 4;

    enum class Phase { none, walking, grabbing, carrying, tossing };

    // Seconds of each phase of a trip.
    static constexpr double walkSeconds = 1.2;
    static constexpr double grabSeconds = 0.5;
    static constexpr double carrySeconds = 1.6;
    static constexpr double tossSeconds = 0.7;
    static constexpr double tripSeconds = walkSeconds + grabSeconds + carrySeconds + tossSeconds;

    void restoreStack();

    // Starts a trip for the first crate still on the stack; false when the stack is empty.
    bool beginTrip(double now);
    // The crate leaves the stack when the hauler reaches it; the trip ends once it is tossed.
    void step(double now);
    // Stops the trip where it is; the crate being hauled disappears.
    void endTrip();

    [[nodiscard]] bool isTripRunning() const { return m_tripCrate.has_value(); }
    [[nodiscard]] std::optional<int> tripCrate() const { return m_tripCrate; }
    [[nodiscard]] Phase phase(double now) const;
    // How far the current phase has come, 0 to 1; 0 without a trip.
    [[nodiscard]] double phaseProgress(double now) const;
    [[nodiscard]] bool isTaken(int crate) const { return m_stackTaken.at(static_cast<std::size_t>(crate)); }
    [[nodiscard]] int cratesLeft() const;

private:
    std::array<bool, stackCrates> m_stackTaken{};
    double m_tripStart = 0;
    std::optional<int> m_tripCrate;
    bool m_tripGrabbed = false;
};

} // namespace kestrow
