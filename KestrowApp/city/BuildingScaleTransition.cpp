#include "city/BuildingScaleTransition.h"

#include "city/TimingCurve.h"

#include <algorithm>

namespace kestrow {

BuildingScales BuildingScaleTransition::scalesAt(double now) const
{
    static constexpr TimingCurve curve(0.33, 0, 0.2, 1);
    if (duration <= 0 || now >= start + duration)
        return to;
    const double eased = curve.valueAt(std::max(now - start, 0.0) / duration);
    return {.system = from.system + (to.system - from.system) * eased,
            .apps = from.apps + (to.apps - from.apps) * eased};
}

} // namespace kestrow
