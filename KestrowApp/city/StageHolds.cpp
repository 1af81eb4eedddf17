#include "city/StageHolds.h"

#include <algorithm>

namespace kestrow {

namespace {

// In the order of the kinds: scan, disk, apps, analyze.
constexpr std::array<double, StageHolds::kindCount> holdSeconds{5.0, 6.0, 4.5, 4.5};

std::size_t indexOf(StageHolds::Kind kind)
{
    return static_cast<std::size_t>(kind);
}

} // namespace

double StageHolds::minOnStage(Kind kind)
{
    return holdSeconds[indexOf(kind)];
}

void StageHolds::raise(Kind kind, double now)
{
    m_holdUntil[indexOf(kind)] = now + minOnStage(kind);
}

bool StageHolds::isHeld(Kind kind, double now) const
{
    const auto& until = m_holdUntil[indexOf(kind)];
    return until && now < *until;
}

bool StageHolds::anyHeld(double now) const
{
    return std::ranges::any_of(m_holdUntil, [now](const auto& until) { return until && now < *until; });
}

std::optional<double> StageHolds::holdUntil(Kind kind) const
{
    return m_holdUntil[indexOf(kind)];
}

} // namespace kestrow
