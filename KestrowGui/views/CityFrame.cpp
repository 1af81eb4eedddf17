#include "views/CityFrame.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace kestrow {

namespace {

constexpr double degreesPerRadian = 180 / std::numbers::pi;
constexpr double calmHalfPeriod = 1.25;
constexpr double fastHalfPeriod = 0.3;
constexpr double blinkerHigh = 0.9;
constexpr double blinkerLow = 0.2;

} // namespace

CityFrame::CityFrame(QObject* parent)
    : QObject(parent)
{
    m_clock.start();
}

void CityFrame::setController(DiskCitySceneController* controller)
{
    if (controller == m_controller)
        return;
    if (m_controller)
        m_controller->disconnect(this);
    m_controller = controller;
    if (m_controller) {
        connect(m_controller, &DiskCitySceneController::frameAdvanced, this, &CityFrame::advance);
        connect(m_controller, &DiskCitySceneController::cameraTransformChanged, this, &CityFrame::advanced);
    }
    Q_EMIT controllerChanged();
    Q_EMIT advanced();
}

void CityFrame::advance()
{
    const double now = static_cast<double>(m_clock.nsecsElapsed()) / 1e9;
    if (!m_controller->reduceMotion())
        m_loopTime += now - m_lastFrame;
    m_lastFrame = now;
    Q_EMIT advanced();
}

int CityFrame::haulerPhase() const
{
    return m_controller ? static_cast<int>(m_controller->hauler().phase(m_controller->now())) : 0;
}

double CityFrame::haulerProgress() const
{
    return m_controller ? m_controller->hauler().phaseProgress(m_controller->now()) : 0;
}

int CityFrame::tripCrate() const
{
    return m_controller ? m_controller->hauler().tripCrate().value_or(-1) : -1;
}

QVariantList CityFrame::cratesTaken() const
{
    QVariantList taken;
    for (int crate = 0; crate < HaulerAct::stackCrates; ++crate)
        taken.append(m_controller && m_controller->hauler().isTaken(crate));
    return taken;
}

QVariantMap CityFrame::presence() const
{
    QVariantMap presence;
    if (m_controller)
        for (const RobotPresence::Duty& duty : m_controller->robotDuties())
            presence.insert(duty.robotId, m_controller->robotPresence(duty.robotId));
    return presence;
}

double CityFrame::blinkerOpacity() const
{
    if (!m_controller)
        return blinkerHigh;
    const DiskCitySceneController::BlinkerPulse pulse = m_controller->truckBlinker();
    if (pulse == DiskCitySceneController::BlinkerPulse::still)
        return blinkerHigh;
    const double half = pulse == DiskCitySceneController::BlinkerPulse::fast ? fastHalfPeriod : calmHalfPeriod;
    // Up and down, eased at both ends, as a cosine does.
    const double eased = (1 + std::cos(std::numbers::pi * m_loopTime / half)) / 2;
    return blinkerLow + (blinkerHigh - blinkerLow) * eased;
}

bool CityFrame::celebrating() const
{
    return m_controller && m_controller->isCelebrating();
}

double CityFrame::yawDegrees() const
{
    return m_controller ? m_controller->cameraPose().yaw * degreesPerRadian : 0;
}

double CityFrame::pitchDegrees() const
{
    return m_controller ? m_controller->cameraPose().pitch * degreesPerRadian : 0;
}

double CityFrame::zoom() const
{
    return m_controller ? m_controller->cameraPose().scale : 1;
}

double CityFrame::panX() const
{
    return m_controller ? m_controller->cameraPose().x : 0;
}

double CityFrame::panZ() const
{
    return m_controller ? m_controller->cameraPose().z : 0;
}

void CityFrame::rotate(double yawRadians, double pitchRadians)
{
    if (!m_controller)
        return;
    CameraPose pose = m_controller->cameraPose();
    pose.yaw += yawRadians;
    pose.pitch = std::clamp(pose.pitch + pitchRadians, steepestPitch, flattestPitch);
    m_controller->setCameraPose(pose);
}

void CityFrame::pan(double right, double forward)
{
    if (!m_controller)
        return;
    CameraPose pose = m_controller->cameraPose();
    // The ground's axes as the camera faces them after its turn about the vertical.
    const double c = std::cos(pose.yaw);
    const double s = std::sin(pose.yaw);
    pose.x = std::clamp(pose.x + right * c - forward * s, -panLimit, panLimit);
    pose.z = std::clamp(pose.z - right * s - forward * c, -panLimit, panLimit);
    m_controller->setCameraPose(pose);
}

void CityFrame::resetCamera()
{
    if (m_controller)
        m_controller->resetCamera(!m_controller->reduceMotion());
}

} // namespace kestrow
