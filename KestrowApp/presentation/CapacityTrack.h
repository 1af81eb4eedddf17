#pragma once

#include "presentation/CapacitySegment.h"

#include <vector>

namespace kestrow {

// The capacity bar: segments side by side with a gap between them. A tiny slice never
// vanishes; its minimum width is taken from the large ones in proportion to their margin.
class CapacityTrack {
public:
    static constexpr double gap = 3.0;
    static constexpr double minimumWidth = 9.0;

    [[nodiscard]] static std::vector<double> widths(const std::vector<CapacitySegment>& segments, double width);
};

} // namespace kestrow
