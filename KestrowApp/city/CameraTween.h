#pragma once

#include "city/CameraPose.h"

#include <functional>

namespace kestrow {

// A running camera move from one pose to another, eased in and out.
struct CameraTween {
    double start = 0;    // seconds on the stage's clock
    double duration = 0; // seconds
    CameraPose from;
    CameraPose to;
    std::function<void()> completion;

    // The elapsed share of the move, limited to 1; a move without duration is done at once.
    [[nodiscard]] double progress(double now) const;
    [[nodiscard]] CameraPose poseAt(double now) const;

    // Quadratic ease-in-out: 2p² below one half, 1 − (−2p + 2)² / 2 from there.
    [[nodiscard]] static double easeInOut(double progress);
};

} // namespace kestrow
