#include "city/DiskCitySceneController.h"
#include "city/TimingCurve.h"

#include <QCoreApplication>
#include <QSignalSpy>
#include <gtest/gtest.h>

#include <algorithm>

using namespace kestrow;

namespace {

using Mode = DiskCitySceneController::DioramaMode;

// A stage on a clock that the test moves: a second of frames runs in microseconds.
struct Stage {
    double now = 0;
    DiskCitySceneController controller{[this] { return now; }};

    // Frames of 1/60 second until `until`, landing on it exactly.
    void playUntil(double until)
    {
        while (now < until) {
            now = std::min(until, now + 1.0 / 60);
            controller.tick();
        }
    }
};

std::vector<Mode> modes(const QSignalSpy& spy)
{
    std::vector<Mode> list;
    for (const auto& arguments : spy)
        list.push_back(arguments.at(0).value<Mode>());
    return list;
}

std::vector<bool> flags(const QSignalSpy& spy)
{
    std::vector<bool> list;
    for (const auto& arguments : spy)
        list.push_back(arguments.at(0).toBool());
    return list;
}

} // namespace

TEST(DiskCitySceneController, ShortScanStaysOnStageForItsHold)
{
    Stage stage;
    auto& city = stage.controller;
    QSignalSpy busy(&city, &DiskCitySceneController::activityChanged);
    QSignalSpy beam(&city, &DiskCitySceneController::radarBeamChanged);

    city.update({.isScanning = true});
    EXPECT_EQ(city.currentMode(), Mode::scanning);
    stage.playUntil(1);
    city.update({});
    stage.playUntil(4.98);
    EXPECT_EQ(city.currentMode(), Mode::scanning);
    EXPECT_TRUE(city.effScanning());
    EXPECT_TRUE(city.reportedBusy());

    stage.playUntil(5.02);
    EXPECT_EQ(city.currentMode(), Mode::idle);
    EXPECT_TRUE(city.isRadarBeamVisible()); // fading out
    EXPECT_TRUE(city.reportedBusy());
    stage.playUntil(5.7);
    EXPECT_FALSE(city.isRadarBeamVisible());
    EXPECT_FALSE(city.reportedBusy());
    EXPECT_EQ(flags(busy), (std::vector<bool>{true, false}));
    EXPECT_EQ(flags(beam), (std::vector<bool>{true, false}));
}

TEST(DiskCitySceneController, TwoScansExtendTheHoldOnlyWhereOneStarts)
{
    Stage stage;
    auto& city = stage.controller;
    QSignalSpy modeSpy(&city, &DiskCitySceneController::modeChanged);

    city.update({.isScanning = true});
    EXPECT_EQ(city.holds().holdUntil(StageHolds::Kind::scan), 5.0);
    stage.playUntil(2);
    city.update({.isScanning = true});
    EXPECT_EQ(city.holds().holdUntil(StageHolds::Kind::scan), 5.0);
    stage.playUntil(3);
    city.update({});
    stage.playUntil(4);
    city.update({.isScanning = true});
    EXPECT_EQ(city.holds().holdUntil(StageHolds::Kind::scan), 9.0);
    stage.playUntil(4.5);
    city.update({});
    stage.playUntil(8.98);
    EXPECT_EQ(city.currentMode(), Mode::scanning);
    stage.playUntil(9.02);
    EXPECT_EQ(modes(modeSpy), (std::vector<Mode>{Mode::scanning, Mode::idle}));
}

TEST(DiskCitySceneController, DiskScanBringsOutTheSweeperAndRestacksTheCrates)
{
    Stage stage;
    auto& city = stage.controller;
    city.update({.isCleaning = true});
    stage.playUntil(0.5);
    city.update({.hasCleaned = true});
    stage.playUntil(10);
    EXPECT_EQ(city.hauler().cratesLeft(), HaulerAct::stackCrates - 1);
    EXPECT_EQ(city.robotPresence(QStringLiteral("sweeper_bot")), 0.0);

    city.update({.isScanning = true, .hasCleaned = true, .isDiskScanning = true});
    EXPECT_EQ(city.hauler().cratesLeft(), HaulerAct::stackCrates);
    stage.playUntil(11.6);
    EXPECT_EQ(city.robotPresence(QStringLiteral("sweeper_bot")), 1.0);
    city.update({.hasCleaned = true});
    stage.playUntil(15.9);
    EXPECT_TRUE(city.effDiskScanning());
    EXPECT_EQ(city.currentMode(), Mode::idle); // the scan's own hold ended at 15
    stage.playUntil(16.1);
    EXPECT_FALSE(city.effDiskScanning());
    stage.playUntil(17);
    EXPECT_TRUE(city.reportedBusy()); // the sweeper is still walking off
    stage.playUntil(17.7);
    EXPECT_FALSE(city.reportedBusy());
}

TEST(DiskCitySceneController, SweepPlaysTheHaulersTripThenCelebrates)
{
    Stage stage;
    auto& city = stage.controller;
    QSignalSpy modeSpy(&city, &DiskCitySceneController::modeChanged);
    QSignalSpy busy(&city, &DiskCitySceneController::activityChanged);

    city.update({.isCleaning = true});
    EXPECT_TRUE(city.sweepActive());
    EXPECT_EQ(city.currentMode(), Mode::cleaning);
    EXPECT_EQ(city.hauler().tripCrate(), 0);
    EXPECT_EQ(city.truckBlinker(), DiskCitySceneController::BlinkerPulse::fast);
    stage.playUntil(0.5);
    city.update({.hasCleaned = true}); // the Sweep itself was quick
    stage.playUntil(1.3);
    EXPECT_EQ(city.hauler().phase(stage.now), HaulerAct::Phase::grabbing);
    EXPECT_NEAR(city.hauler().phaseProgress(stage.now), 0.2, 1e-9);
    EXPECT_TRUE(city.hauler().isTaken(0));
    stage.playUntil(3.9);
    EXPECT_EQ(city.currentMode(), Mode::cleaning);
    EXPECT_TRUE(city.sweepActive());

    stage.playUntil(4.1);
    EXPECT_FALSE(city.sweepActive());
    EXPECT_TRUE(city.isCelebrating());
    EXPECT_EQ(city.truckBlinker(), DiskCitySceneController::BlinkerPulse::calm);
    EXPECT_EQ(modes(modeSpy), (std::vector<Mode>{Mode::cleaning, Mode::victory, Mode::idle}));
    stage.playUntil(6);
    EXPECT_EQ(flags(busy), (std::vector<bool>{true, false}));

    // A longer Sweep sends the hauler again, and the trip under way always finishes.
    city.update({.isCleaning = true, .hasCleaned = true});
    stage.playUntil(11);
    city.update({.hasCleaned = true});
    stage.playUntil(13.9);
    EXPECT_TRUE(city.sweepActive());
    stage.playUntil(14.1);
    EXPECT_FALSE(city.sweepActive());
    EXPECT_EQ(city.hauler().cratesLeft(), HaulerAct::stackCrates - 3);
}

TEST(DiskCitySceneController, ReducedMotionSkipsTheActs)
{
    Stage stage;
    auto& city = stage.controller;
    city.setReduceMotion(true);
    QSignalSpy modeSpy(&city, &DiskCitySceneController::modeChanged);

    city.update({.systemScale = 0.9});
    city.update({.systemScale = 1.2});
    EXPECT_EQ(city.displayedSystemScale(), 1.2);

    city.update({.isScanning = true});
    stage.playUntil(1);
    city.update({});
    stage.playUntil(5.02);
    EXPECT_FALSE(city.isRadarBeamVisible());

    city.update({.isCleaning = true});
    EXPECT_TRUE(city.sweepActive());
    EXPECT_FALSE(city.hauler().isTripRunning());
    EXPECT_EQ(city.truckBlinker(), DiskCitySceneController::BlinkerPulse::still);
    stage.playUntil(7);
    EXPECT_TRUE(city.sweepActive());
    city.update({.hasCleaned = true});
    stage.playUntil(7.1);
    EXPECT_FALSE(city.sweepActive());
    EXPECT_EQ(city.hauler().cratesLeft(), HaulerAct::stackCrates);
    EXPECT_EQ(modes(modeSpy),
              (std::vector<Mode>{Mode::scanning, Mode::idle, Mode::cleaning, Mode::victory, Mode::idle}));
}

TEST(DiskCitySceneController, TowersMoveOnlyForAVisibleChange)
{
    Stage stage;
    auto& city = stage.controller;
    QSignalSpy camera(&city, &DiskCitySceneController::cameraTransformChanged);

    city.update({.systemScale = 0.9, .appsScale = 1.1});
    EXPECT_TRUE(city.hasInitializedBuildingScales());
    EXPECT_EQ(city.displayedScales(), (BuildingScales{0.9, 1.1}));
    city.update({.systemScale = 0.902, .appsScale = 1.098});
    EXPECT_EQ(city.currentScales(), (BuildingScales{0.9, 1.1}));
    EXPECT_EQ(camera.count(), 0);
    city.update({.systemScale = 0.9, .appsScale = 1.104});
    EXPECT_EQ(city.currentScales(), (BuildingScales{0.9, 1.104}));
    EXPECT_EQ(camera.count(), 1);
    stage.playUntil(1);

    city.update({.systemScale = 1.3, .appsScale = 1.104});
    EXPECT_EQ(city.currentScales(), (BuildingScales{1.3, 1.104}));
    EXPECT_EQ(camera.count(), 2);
    EXPECT_EQ(city.displayedSystemScale(), 0.9);
    stage.playUntil(1.36);
    EXPECT_NEAR(city.displayedSystemScale(), 0.9 + 0.4 * 0.791257, 1e-5);
    stage.playUntil(1.8);
    EXPECT_EQ(city.displayedScales(), (BuildingScales{1.3, 1.104}));
}

TEST(DiskCitySceneController, OtherStylesNeverHoldTheApplicationBack)
{
    Stage stage;
    auto& city = stage.controller;
    QSignalSpy busy(&city, &DiskCitySceneController::activityChanged);
    QSignalSpy modelFlags(&city, &DiskCitySceneController::modelFlagsChanged);
    city.update({.isScanning = true});
    stage.playUntil(0.1);
    city.switchDiorama(DioramaStyle::freightTerminal);
    stage.playUntil(0.2);
    city.update({.isScanning = true, .isCleaning = true});
    city.update({.isScanning = true, .isCleaning = true});
    EXPECT_TRUE(city.sweepActive());
    EXPECT_FALSE(city.isPlayingTask());
    stage.playUntil(1);
    EXPECT_EQ(flags(busy), (std::vector<bool>{true, false}));
    // Such a style shows the model's flags as they are, each change once.
    EXPECT_TRUE(city.isScanning() && city.isCleaning() && !city.hasCleaned());
    EXPECT_EQ(modelFlags.count(), 2);
}

TEST(DiskCitySceneController, ModesChangeOnlyAlongTheirTransitions)
{
    const auto next = &DiskCitySceneController::nextMode;
    EXPECT_EQ(next(Mode::idle, true, true, false), Mode::cleaning);
    EXPECT_EQ(next(Mode::victory, true, false, true), Mode::scanning);
    EXPECT_EQ(next(Mode::cleaning, true, false, true), Mode::scanning);
    EXPECT_EQ(next(Mode::cleaning, false, false, true), Mode::victory);
    EXPECT_EQ(next(Mode::cleaning, false, false, false), Mode::idle);
    EXPECT_EQ(next(Mode::victory, false, false, true), Mode::idle);
    EXPECT_EQ(next(Mode::scanning, false, false, true), Mode::idle);
}

TEST(DiskCitySceneController, RobotsWalkAtASteadyPaceThroughStalledFrames)
{
    Stage stage;
    auto& city = stage.controller;
    const QString engineer = QStringLiteral("engineer_bot");
    EXPECT_EQ(city.robotPresence(QStringLiteral("patrol_bot")), 1.0);
    EXPECT_EQ(city.robotPresence(engineer), 0.0);

    city.update({.isAnalyzingSystem = true});
    stage.now = 2;
    city.tick();
    EXPECT_NEAR(city.robotPresence(engineer), (1.0 / 30) / RobotPresence::walkSeconds, 1e-12);
    EXPECT_TRUE(city.reportedBusy());
    stage.playUntil(2.5);
    EXPECT_LT(city.robotPresence(engineer), 1.0);
    stage.playUntil(4);
    EXPECT_EQ(city.robotPresence(engineer), 1.0);
}

TEST(DiskCitySceneController, CameraMovesEaseInAndOut)
{
    EXPECT_EQ(CameraTween::easeInOut(0), 0);
    EXPECT_EQ(CameraTween::easeInOut(0.25), 0.125);
    EXPECT_EQ(CameraTween::easeInOut(0.5), 0.5);
    EXPECT_EQ(CameraTween::easeInOut(0.75), 0.875);
    EXPECT_EQ(CameraTween::easeInOut(1), 1);

    Stage stage;
    auto& city = stage.controller;
    int completions = 0;
    city.setCameraPose({});
    city.moveCamera({.yaw = 1, .scale = 3}, 1, [&] { ++completions; });
    stage.playUntil(0.25);
    EXPECT_DOUBLE_EQ(city.cameraPose().yaw, 0.125);
    EXPECT_DOUBLE_EQ(city.cameraPose().scale, 1.25);
    stage.playUntil(1.5);
    EXPECT_EQ(city.cameraPose(), (CameraPose{.yaw = 1, .scale = 3}));
    EXPECT_FALSE(city.isCameraMoving());
    EXPECT_EQ(completions, 1);

    city.moveCamera({}, 1, [&] { ++completions; });
    stage.playUntil(2);
    city.cancelCameraAnimation();
    stage.playUntil(3);
    EXPECT_DOUBLE_EQ(city.cameraPose().yaw, 0.5);
    EXPECT_EQ(completions, 1);

    city.resetCamera(false, 1, [&] { ++completions; });
    EXPECT_EQ(completions, 2);
    EXPECT_FALSE(city.isCameraMoving());
}

TEST(DiskCitySceneController, FrameTickerRunsOnTheSteadyClock)
{
    char name[] = "kestrow_city_tests";
    char* arguments[] = {name, nullptr};
    int count = 1;
    const QCoreApplication application(count, arguments);
    DiskCitySceneController city;
    QSignalSpy frames(&city, &DiskCitySceneController::frameAdvanced);
    city.update({.isScanning = true});
    city.startFrameTicker();
    ASSERT_TRUE(frames.wait(2000));
    EXPECT_TRUE(city.reportedBusy());
}

TEST(TimingCurve, MapsTimeThroughItsControlPoints)
{
    const TimingCurve towers(0.33, 0, 0.2, 1);
    EXPECT_EQ(towers.valueAt(0), 0);
    EXPECT_NEAR(towers.valueAt(1), 1, 1e-9);
    EXPECT_NEAR(towers.valueAt(0.1), 0.038582, 1e-5);
    EXPECT_NEAR(towers.valueAt(0.5), 0.791257, 1e-5);
    EXPECT_NEAR(towers.valueAt(0.9), 0.994399, 1e-5);
    EXPECT_EQ(towers.valueAt(-1), towers.valueAt(0));
    double last = 0;
    for (int step = 1; step <= 100; ++step) {
        const double value = towers.valueAt(step / 100.0);
        EXPECT_GE(value, last);
        last = value;
    }
    EXPECT_NEAR(TimingCurve(0, 0, 1, 1).valueAt(0.3), 0.3, 1e-6);
}
