#pragma once

#include "city/BuildingScaleTransition.h"
#include "city/CameraTween.h"
#include "city/DioramaStyle.h"
#include "city/DiskCityModel.h"
#include "city/HaulerAct.h"
#include "city/RobotPresence.h"
#include "city/StageHolds.h"

#include <QObject>
#include <QTimer>

#include <functional>
#include <optional>
#include <vector>

namespace kestrow {

// Turns each city model into the stage's motion, independently of how the stage is drawn. The
// stage tells the truth about what runs but stays watchable: every activity keeps its act on
// stage for a minimum time, a Sweep plays the hauler's act to its end, and the controller reports
// itself busy until all of that is over, which holds the application's run buttons back.
class DiskCitySceneController : public QObject {
    Q_OBJECT
    Q_PROPERTY(DioramaMode mode READ currentMode NOTIFY modeChanged)
    Q_PROPERTY(bool busy READ reportedBusy NOTIFY activityChanged)
    Q_PROPERTY(bool sweepActive READ sweepActive NOTIFY sweepActiveChanged)
    Q_PROPERTY(bool effScanning READ effScanning NOTIFY effectiveFlagsChanged)
    Q_PROPERTY(bool effDiskScanning READ effDiskScanning NOTIFY effectiveFlagsChanged)
    Q_PROPERTY(bool effLoadingApps READ effLoadingApps NOTIFY effectiveFlagsChanged)
    Q_PROPERTY(bool effAnalyzing READ effAnalyzing NOTIFY effectiveFlagsChanged)
    Q_PROPERTY(double systemScale READ displayedSystemScale NOTIFY buildingScalesChanged)
    Q_PROPERTY(double appsScale READ displayedAppsScale NOTIFY buildingScalesChanged)
    Q_PROPERTY(bool radarBeamVisible READ isRadarBeamVisible NOTIFY radarBeamChanged)
    Q_PROPERTY(bool reduceMotion READ reduceMotion WRITE setReduceMotion NOTIFY reduceMotionChanged)
    // The model's own flags, before any hold: what a style without acts shows.
    Q_PROPERTY(bool isScanning READ isScanning NOTIFY modelFlagsChanged)
    Q_PROPERTY(bool isCleaning READ isCleaning NOTIFY modelFlagsChanged)
    Q_PROPERTY(bool hasCleaned READ hasCleaned NOTIFY modelFlagsChanged)

public:
    enum class DioramaMode { idle, scanning, cleaning, victory };
    Q_ENUM(DioramaMode)
    enum class BlinkerPulse { still, calm, fast };
    Q_ENUM(BlinkerPulse)

    // Monotonic seconds.
    using Clock = std::function<double()>;

    static constexpr double scaleThreshold = 0.003;
    static constexpr double beamFadeSeconds = 0.6;
    static constexpr double celebrationSeconds = 3.0;
    static constexpr double defaultCameraSeconds = 0.8;

    // Without a clock the controller reads the system's steady clock.
    explicit DiskCitySceneController(Clock clock = {}, QObject* parent = nullptr);

    void update(const DiskCityModel& model);
    void switchDiorama(DioramaStyle style);
    // Moves the towers to new heights in one animated step, at once under reduced motion.
    void applyBuildingScales(double system, double apps);
    void setReduceMotion(bool reduce);

    // Direct manipulation, such as dragging: the pose applies at once and ends any camera move.
    void setCameraPose(const CameraPose& pose);
    void moveCamera(const CameraPose& to, double duration, std::function<void()> completion = {});
    void resetCamera(bool animated, double duration = defaultCameraSeconds, std::function<void()> completion = {});
    // Stops a camera move where it stands; its completion does not run.
    void cancelCameraAnimation();

    // One frame: the act moves on, and a change of `isPlayingTask` is reported.
    void tick();
    // Calls tick() sixty times a second on this object's thread until the controller goes.
    void startFrameTicker();

    // True while the classic city still acts out a run; never in another style.
    [[nodiscard]] bool isPlayingTask() const;
    // cleaning while the Sweep act plays, scanning while scanning, victory only straight after
    // cleaning with a Sweep done, idle otherwise.
    [[nodiscard]] static DioramaMode nextMode(DioramaMode current, bool isScanning, bool isCleaning, bool hasCleaned);
    // The classic city's robots and whether each is wanted on stage now.
    [[nodiscard]] std::vector<RobotPresence::Duty> robotDuties() const;

    [[nodiscard]] DioramaStyle currentStyle() const { return m_style; }
    [[nodiscard]] DioramaMode currentMode() const { return m_mode; }
    [[nodiscard]] bool reportedBusy() const { return m_reportedBusy; }
    [[nodiscard]] bool sweepActive() const { return m_sweepActive; }
    [[nodiscard]] bool effScanning() const { return m_effScanning; }
    [[nodiscard]] bool effDiskScanning() const { return m_effDiskScanning; }
    [[nodiscard]] bool effLoadingApps() const { return m_effLoadingApps; }
    [[nodiscard]] bool effAnalyzing() const { return m_effAnalyzing; }
    [[nodiscard]] bool reduceMotion() const { return m_reduceMotion; }
    [[nodiscard]] bool isScanning() const { return m_isScanning; }
    [[nodiscard]] bool isCleaning() const { return m_isCleaning; }
    [[nodiscard]] bool hasCleaned() const { return m_hasCleaned; }
    // The controller's clock, against which the hauler's phases are read.
    [[nodiscard]] double now() const { return m_clock(); }
    [[nodiscard]] const StageHolds& holds() const { return m_holds; }
    [[nodiscard]] const HaulerAct& hauler() const { return m_hauler; }
    [[nodiscard]] double robotPresence(const QString& robotId) const { return m_robots.presence(robotId); }
    // The last heights applied, and the heights shown now while the towers move towards them.
    [[nodiscard]] BuildingScales currentScales() const { return m_scaleTransition.to; }
    [[nodiscard]] BuildingScales displayedScales() const;
    [[nodiscard]] double displayedSystemScale() const { return displayedScales().system; }
    [[nodiscard]] double displayedAppsScale() const { return displayedScales().apps; }
    [[nodiscard]] bool hasInitializedBuildingScales() const { return m_hasInitializedBuildingScales; }
    [[nodiscard]] bool isRadarBeamVisible() const { return m_beam != Beam::hidden; }
    [[nodiscard]] bool isCelebrating() const;
    [[nodiscard]] BlinkerPulse truckBlinker() const;
    [[nodiscard]] const CameraPose& cameraPose() const { return m_cameraPose; }
    [[nodiscard]] bool isCameraMoving() const { return m_cameraTween.has_value(); }

Q_SIGNALS:
    void activityChanged(bool busy);
    void cameraTransformChanged();
    void modeChanged(kestrow::DiskCitySceneController::DioramaMode mode);
    void styleChanged();
    void sweepActiveChanged(bool active);
    void effectiveFlagsChanged();
    void buildingScalesChanged();
    void radarBeamChanged(bool visible);
    void reduceMotionChanged(bool reduce);
    void modelFlagsChanged();
    // After every frame, for whatever follows the robots, the hauler and the beam.
    void frameAdvanced();

private:
    enum class Beam { hidden, sweeping, fading };

    void refreshDioramaState();
    void updateDioramaMode(bool isScanning, bool isCleaning, bool hasCleaned);
    void startScanBeam();
    void finishScanBeam();
    void playCelebration();
    void tickRobots();
    void beginSweep();
    void endSweep();
    void stepSweep(double now);
    void stepRadarBeam(double now);
    void stepBuildingScales(double now);
    void stepCameraTween(double now);
    void setSweepActive(bool active);

    Clock m_clock;
    QTimer m_frameTimer;
    DioramaStyle m_style = DioramaStyle::classicCity;
    DioramaMode m_mode = DioramaMode::idle;

    bool m_isScanning = false;
    bool m_isCleaning = false;
    bool m_hasCleaned = false;
    bool m_isDiskScanning = false;
    bool m_isLoadingApps = false;
    bool m_isAnalyzingSystem = false;

    bool m_effScanning = false;
    bool m_effDiskScanning = false;
    bool m_effLoadingApps = false;
    bool m_effAnalyzing = false;
    StageHolds m_holds;

    bool m_sweepActive = false;
    HaulerAct m_hauler;
    RobotPresence m_robots;
    double m_lastRobotTick = 0;
    Beam m_beam = Beam::hidden;
    double m_beamFadeEnd = 0;
    std::optional<double> m_celebrationUntil;

    bool m_reportedBusy = false;
    bool m_reduceMotion = false;

    bool m_hasInitializedBuildingScales = false;
    bool m_scalesAnimating = false;
    BuildingScaleTransition m_scaleTransition;

    CameraPose m_cameraPose;
    std::optional<CameraTween> m_cameraTween;
};

} // namespace kestrow
