#include "presentation/CapacityTrack.h"

#include <algorithm>

namespace kestrow {

std::vector<double> CapacityTrack::widths(const std::vector<CapacitySegment>& segments, double width)
{
    if (segments.empty())
        return {};
    const auto count = static_cast<double>(segments.size());
    const double available = std::max(width - gap * (count - 1), 0.0);
    double sum = 0;
    for (const CapacitySegment& segment : segments)
        sum += segment.fraction;
    sum = std::max(sum, 0.0001);

    std::vector<double> raw;
    for (const CapacitySegment& segment : segments)
        raw.push_back(available * segment.fraction / sum);
    const double floor = std::min(available / count, minimumWidth);
    double deficit = 0;
    double surplus = 0;
    for (std::size_t index = 0; index < segments.size(); ++index) {
        if (segments[index].fraction > 0 && floor - raw[index] > 0)
            deficit += floor - raw[index];
        if (raw[index] > floor)
            surplus += raw[index] - floor;
    }
    if (!(deficit > 0 && surplus > 0))
        return raw;

    std::vector<double> widths;
    for (std::size_t index = 0; index < segments.size(); ++index) {
        if (!(segments[index].fraction > 0))
            widths.push_back(0);
        else if (raw[index] < floor)
            widths.push_back(floor);
        else
            widths.push_back(raw[index] - (raw[index] - floor) / surplus * deficit);
    }
    return widths;
}

} // namespace kestrow
