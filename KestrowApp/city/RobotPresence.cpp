#include "city/RobotPresence.h"

#include <algorithm>

namespace kestrow {

namespace {

double target(const RobotPresence::Duty& duty)
{
    return duty.onDuty ? 1.0 : 0.0;
}

} // namespace

void RobotPresence::settle(const std::vector<Duty>& duties)
{
    for (const Duty& duty : duties)
        m_presence[duty.robotId] = target(duty);
}

bool RobotPresence::step(const std::vector<Duty>& duties, double elapsed)
{
    const double stride = std::clamp(elapsed, 0.0, longestStep) / walkSeconds;
    bool moved = false;
    for (const Duty& duty : duties) {
        double& value = m_presence[duty.robotId];
        const double goal = target(duty);
        const double next = value < goal ? std::min(value + stride, goal) : std::max(value - stride, goal);
        moved = moved || next != value;
        value = next;
    }
    return moved;
}

bool RobotPresence::isAtRest(const std::vector<Duty>& duties) const
{
    return std::ranges::all_of(duties, [this](const Duty& duty) { return presence(duty.robotId) == target(duty); });
}

double RobotPresence::presence(const QString& robotId) const
{
    const auto found = m_presence.find(robotId);
    return found == m_presence.end() ? 0.0 : found->second;
}

} // namespace kestrow
