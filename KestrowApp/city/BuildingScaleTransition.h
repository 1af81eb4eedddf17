#pragma once

#include "city/BuildingScales.h"

namespace kestrow {

// The towers growing or shrinking to new heights in one animated step, on a curve that starts
// gently and settles softly.
struct BuildingScaleTransition {
    static constexpr double animatedDuration = 0.72; // seconds

    double start = 0;
    double duration = 0;
    BuildingScales from;
    BuildingScales to;

    [[nodiscard]] BuildingScales scalesAt(double now) const;
    [[nodiscard]] bool isFinished(double now) const { return now >= start + duration; }
};

} // namespace kestrow
