#include "city/CameraTween.h"

#include <algorithm>

namespace kestrow {

namespace {

double between(double from, double to, double amount)
{
    return from + (to - from) * amount;
}

} // namespace

double CameraTween::progress(double now) const
{
    if (duration <= 0)
        return 1;
    return std::clamp((now - start) / duration, 0.0, 1.0);
}

CameraPose CameraTween::poseAt(double now) const
{
    const double eased = easeInOut(progress(now));
    return {.yaw = between(from.yaw, to.yaw, eased),
            .pitch = between(from.pitch, to.pitch, eased),
            .scale = between(from.scale, to.scale, eased),
            .x = between(from.x, to.x, eased),
            .y = between(from.y, to.y, eased),
            .z = between(from.z, to.z, eased)};
}

double CameraTween::easeInOut(double progress)
{
    if (progress < 0.5)
        return 2 * progress * progress;
    const double rest = -2 * progress + 2;
    return 1 - rest * rest / 2;
}

} // namespace kestrow
