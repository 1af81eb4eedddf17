#include "city/HaulerAct.h"

#include <algorithm>

namespace kestrow {

namespace {

struct PhaseSpan {
    HaulerAct::Phase phase;
    double seconds;
};
constexpr std::array<PhaseSpan, 4> tripPhases{{{HaulerAct::Phase::walking, HaulerAct::walkSeconds},
                                               {HaulerAct::Phase::grabbing, HaulerAct::grabSeconds},
                                               {HaulerAct::Phase::carrying, HaulerAct::carrySeconds},
                                               {HaulerAct::Phase::tossing, HaulerAct::tossSeconds}}};

} // namespace

void HaulerAct::restoreStack()
{
    m_stackTaken.fill(false);
}

bool HaulerAct::beginTrip(double now)
{
    const auto* free = std::ranges::find(m_stackTaken, false);
    if (free == m_stackTaken.end())
        return false;
    m_tripCrate = static_cast<int>(free - m_stackTaken.begin());
    m_tripStart = now;
    m_tripGrabbed = false;
    return true;
}

void HaulerAct::step(double now)
{
    if (!m_tripCrate)
        return;
    const double elapsed = now - m_tripStart;
    if (!m_tripGrabbed && elapsed >= walkSeconds) {
        m_tripGrabbed = true;
        m_stackTaken.at(static_cast<std::size_t>(*m_tripCrate)) = true;
    }
    if (elapsed >= tripSeconds)
        endTrip();
}

void HaulerAct::endTrip()
{
    m_tripCrate.reset();
    m_tripGrabbed = false;
}

HaulerAct::Phase HaulerAct::phase(double now) const
{
    if (!m_tripCrate)
        return Phase::none;
    double elapsed = now - m_tripStart;
    for (const PhaseSpan& span : tripPhases) {
        if (elapsed < span.seconds)
            return span.phase;
        elapsed -= span.seconds;
    }
    return Phase::tossing;
}

double HaulerAct::phaseProgress(double now) const
{
    if (!m_tripCrate)
        return 0;
    double elapsed = std::max(now - m_tripStart, 0.0);
    for (const PhaseSpan& span : tripPhases) {
        if (elapsed < span.seconds)
            return elapsed / span.seconds;
        elapsed -= span.seconds;
    }
    return 1;
}

int HaulerAct::cratesLeft() const
{
    return static_cast<int>(std::ranges::count(m_stackTaken, false));
}

} // namespace kestrow
