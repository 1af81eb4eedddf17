#include "city/DiskCitySceneController.h"

#include <chrono>
#include <cmath>
#include <utility>

namespace kestrow {

namespace {

double steadySeconds()
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

// The camera's resting view: the city seen from the south-east, a little from above.
constexpr CameraPose homePose{.yaw = -0.62, .pitch = -0.52, .scale = 1};

constexpr int frameMilliseconds = 1000 / 60;

} // namespace

DiskCitySceneController::DiskCitySceneController(Clock clock, QObject* parent)
    : QObject(parent)
    , m_clock(clock ? std::move(clock) : Clock(steadySeconds))
    , m_frameTimer(this)
    , m_lastRobotTick(m_clock())
    , m_cameraPose(homePose)
{
    const DiskCityModel unset;
    m_scaleTransition.from = m_scaleTransition.to = {.system = unset.systemScale, .apps = unset.appsScale};
    m_robots.settle(robotDuties());
    m_frameTimer.setTimerType(Qt::PreciseTimer);
    connect(&m_frameTimer, &QTimer::timeout, this, &DiskCitySceneController::tick);
}

void DiskCitySceneController::update(const DiskCityModel& model)
{
    const double now = m_clock();

    const BuildingScales remembered = currentScales();
    if (!m_hasInitializedBuildingScales) {
        m_hasInitializedBuildingScales = true;
        m_scaleTransition = {.start = now,
                             .duration = 0,
                             .from = {model.systemScale, model.appsScale},
                             .to = {model.systemScale, model.appsScale}};
        Q_EMIT buildingScalesChanged();
    } else if (std::abs(model.systemScale - remembered.system) > scaleThreshold ||
               std::abs(model.appsScale - remembered.apps) > scaleThreshold) {
        applyBuildingScales(model.systemScale, model.appsScale);
        Q_EMIT cameraTransformChanged();
    }

    // Holds start only where an activity starts, so that a long run is not held on further.
    if (model.isScanning && !m_isScanning)
        m_holds.raise(StageHolds::Kind::scan, now);
    if (model.isDiskScanning && !m_isDiskScanning) {
        m_holds.raise(StageHolds::Kind::disk, now);
        m_hauler.restoreStack();
    }
    if (model.isLoadingApps && !m_isLoadingApps)
        m_holds.raise(StageHolds::Kind::apps, now);
    if (model.isAnalyzingSystem && !m_isAnalyzingSystem)
        m_holds.raise(StageHolds::Kind::analyze, now);
    const bool cleaningStarts = model.isCleaning && !m_isCleaning;
    const bool flagsChange =
        model.isScanning != m_isScanning || model.isCleaning != m_isCleaning || model.hasCleaned != m_hasCleaned;

    m_isScanning = model.isScanning;
    m_isCleaning = model.isCleaning;
    m_hasCleaned = model.hasCleaned;
    m_isDiskScanning = model.isDiskScanning;
    m_isLoadingApps = model.isLoadingApps;
    m_isAnalyzingSystem = model.isAnalyzingSystem;
    if (flagsChange)
        Q_EMIT modelFlagsChanged();

    if (cleaningStarts) {
        if (m_reduceMotion)
            setSweepActive(true);
        else
            beginSweep();
    }
    refreshDioramaState();
}

void DiskCitySceneController::switchDiorama(DioramaStyle style)
{
    if (style == m_style)
        return;
    m_style = style;
    Q_EMIT styleChanged();
}

void DiskCitySceneController::applyBuildingScales(double system, double apps)
{
    const double now = m_clock();
    m_scaleTransition = {.start = now,
                         .duration = m_reduceMotion ? 0 : BuildingScaleTransition::animatedDuration,
                         .from = m_scaleTransition.scalesAt(now),
                         .to = {system, apps}};
    m_scalesAnimating = m_scaleTransition.duration > 0;
    Q_EMIT buildingScalesChanged();
}

void DiskCitySceneController::setReduceMotion(bool reduce)
{
    if (reduce == m_reduceMotion)
        return;
    m_reduceMotion = reduce;
    Q_EMIT reduceMotionChanged(reduce);
}

void DiskCitySceneController::setCameraPose(const CameraPose& pose)
{
    m_cameraTween.reset();
    m_cameraPose = pose;
    Q_EMIT cameraTransformChanged();
}

void DiskCitySceneController::moveCamera(const CameraPose& to, double duration, std::function<void()> completion)
{
    m_cameraTween = CameraTween{
        .start = m_clock(), .duration = duration, .from = m_cameraPose, .to = to, .completion = std::move(completion)};
    if (duration <= 0)
        stepCameraTween(m_cameraTween->start);
}

void DiskCitySceneController::resetCamera(bool animated, double duration, std::function<void()> completion)
{
    moveCamera(homePose, animated ? duration : 0, std::move(completion));
}

void DiskCitySceneController::cancelCameraAnimation()
{
    m_cameraTween.reset();
}

void DiskCitySceneController::tick()
{
    const double now = m_clock();
    if (m_style == DioramaStyle::classicCity) {
        refreshDioramaState();
        tickRobots();
        stepRadarBeam(now);
    }
    stepBuildingScales(now);
    stepCameraTween(now);
    const bool busy = isPlayingTask();
    if (busy != m_reportedBusy) {
        m_reportedBusy = busy;
        Q_EMIT activityChanged(busy);
    }
    Q_EMIT frameAdvanced();
}

void DiskCitySceneController::startFrameTicker()
{
    m_frameTimer.start(frameMilliseconds);
}

bool DiskCitySceneController::isPlayingTask() const
{
    if (m_style != DioramaStyle::classicCity)
        return false;
    return m_sweepActive || m_holds.anyHeld(m_clock()) || isRadarBeamVisible() || !m_robots.isAtRest(robotDuties());
}

DiskCitySceneController::DioramaMode DiskCitySceneController::nextMode(DioramaMode current, bool isScanning,
                                                                       bool isCleaning, bool hasCleaned)
{
    if (isCleaning)
        return DioramaMode::cleaning;
    if (isScanning)
        return DioramaMode::scanning;
    if (hasCleaned && current == DioramaMode::cleaning)
        return DioramaMode::victory;
    return DioramaMode::idle;
}

std::vector<RobotPresence::Duty> DiskCitySceneController::robotDuties() const
{
    // The sentinel, the developer at its desk and the hauler at its dock are always at their
    // posts; the sweeper works the disk scans and the Sweep, the engineer every analysis.
    return {
        {QStringLiteral("patrol_bot"), true},
        {QStringLiteral("sweeper_bot"), m_effDiskScanning || m_sweepActive},
        {QStringLiteral("dev_worker"), true},
        {QStringLiteral("hauler_bot"), true},
        {QStringLiteral("engineer_bot"), m_effAnalyzing || m_effLoadingApps},
    };
}

BuildingScales DiskCitySceneController::displayedScales() const
{
    return m_scaleTransition.scalesAt(m_clock());
}

bool DiskCitySceneController::isCelebrating() const
{
    return m_celebrationUntil && m_clock() < *m_celebrationUntil;
}

DiskCitySceneController::BlinkerPulse DiskCitySceneController::truckBlinker() const
{
    if (m_reduceMotion)
        return BlinkerPulse::still;
    return m_sweepActive ? BlinkerPulse::fast : BlinkerPulse::calm;
}

void DiskCitySceneController::refreshDioramaState()
{
    const double now = m_clock();
    const auto effective = [&](bool flag, StageHolds::Kind kind) { return flag || m_holds.isHeld(kind, now); };
    const bool scanning = effective(m_isScanning, StageHolds::Kind::scan);
    const bool disk = effective(m_isDiskScanning, StageHolds::Kind::disk);
    const bool apps = effective(m_isLoadingApps, StageHolds::Kind::apps);
    const bool analyzing = effective(m_isAnalyzingSystem, StageHolds::Kind::analyze);
    if (scanning != m_effScanning || disk != m_effDiskScanning || apps != m_effLoadingApps ||
        analyzing != m_effAnalyzing) {
        m_effScanning = scanning;
        m_effDiskScanning = disk;
        m_effLoadingApps = apps;
        m_effAnalyzing = analyzing;
        Q_EMIT effectiveFlagsChanged();
    }
    updateDioramaMode(m_effScanning, m_sweepActive, m_hasCleaned);
}

void DiskCitySceneController::updateDioramaMode(bool isScanning, bool isCleaning, bool hasCleaned)
{
    const DioramaMode next = nextMode(m_mode, isScanning, isCleaning, hasCleaned);
    if (next == m_mode)
        return;
    m_mode = next;
    if (next == DioramaMode::scanning)
        startScanBeam();
    else if (next == DioramaMode::victory)
        playCelebration();
    else
        finishScanBeam();
    Q_EMIT modeChanged(next);
    tickRobots();
}

void DiskCitySceneController::startScanBeam()
{
    const bool wasVisible = isRadarBeamVisible();
    m_beam = Beam::sweeping;
    if (!wasVisible)
        Q_EMIT radarBeamChanged(true);
}

void DiskCitySceneController::finishScanBeam()
{
    if (m_beam != Beam::sweeping)
        return;
    if (m_reduceMotion) {
        m_beam = Beam::hidden;
        Q_EMIT radarBeamChanged(false);
        return;
    }
    m_beam = Beam::fading;
    m_beamFadeEnd = m_clock() + beamFadeSeconds;
}

void DiskCitySceneController::playCelebration()
{
    m_celebrationUntil = m_clock() + celebrationSeconds;
}

void DiskCitySceneController::tickRobots()
{
    const double now = m_clock();
    const double elapsed = now - m_lastRobotTick;
    m_lastRobotTick = now;
    m_robots.step(robotDuties(), elapsed);
    stepSweep(now);
}

void DiskCitySceneController::beginSweep()
{
    if (m_sweepActive)
        return;
    setSweepActive(true);
    m_hauler.beginTrip(m_clock());
}

void DiskCitySceneController::endSweep()
{
    m_hauler.endTrip();
    setSweepActive(false);
}

void DiskCitySceneController::stepSweep(double now)
{
    if (!m_sweepActive)
        return;
    m_hauler.step(now);
    if (m_hauler.isTripRunning())
        return;
    // A trip under way always finishes; after it the hauler goes again while the Sweep runs.
    if (!m_isCleaning)
        endSweep();
    else if (!m_reduceMotion)
        m_hauler.beginTrip(now);
}

void DiskCitySceneController::stepRadarBeam(double now)
{
    if (m_beam == Beam::fading && now >= m_beamFadeEnd) {
        m_beam = Beam::hidden;
        Q_EMIT radarBeamChanged(false);
    }
}

void DiskCitySceneController::stepBuildingScales(double now)
{
    if (!m_scalesAnimating)
        return;
    m_scalesAnimating = !m_scaleTransition.isFinished(now);
    Q_EMIT buildingScalesChanged();
}

void DiskCitySceneController::stepCameraTween(double now)
{
    if (!m_cameraTween)
        return;
    m_cameraPose = m_cameraTween->poseAt(now);
    const bool finished = m_cameraTween->progress(now) >= 1;
    std::function<void()> completion;
    if (finished) {
        completion = std::move(m_cameraTween->completion);
        m_cameraTween.reset();
    }
    Q_EMIT cameraTransformChanged();
    if (completion)
        completion();
}

void DiskCitySceneController::setSweepActive(bool active)
{
    if (active == m_sweepActive)
        return;
    m_sweepActive = active;
    Q_EMIT sweepActiveChanged(active);
}

} // namespace kestrow
