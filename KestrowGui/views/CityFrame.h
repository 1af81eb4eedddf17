#pragma once

#include "city/DiskCitySceneController.h"

#include <QElapsedTimer>
#include <QObject>
#include <QPointer>
#include <QQmlEngine>
#include <QVariantList>
#include <QVariantMap>

namespace kestrow {

// One frame of the city stage as the scene draws it: what the controller's act looks like now,
// read after each tick of its frame ticker, so that the scene moves with the ticker and not with
// the renderer. Also the camera's handles for dragging.
class CityFrame : public QObject {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(
        kestrow::DiskCitySceneController* controller READ controller WRITE setController NOTIFY controllerChanged)
    Q_PROPERTY(double loopTime READ loopTime NOTIFY advanced)
    Q_PROPERTY(int haulerPhase READ haulerPhase NOTIFY advanced)
    Q_PROPERTY(double haulerProgress READ haulerProgress NOTIFY advanced)
    Q_PROPERTY(int tripCrate READ tripCrate NOTIFY advanced)
    Q_PROPERTY(QVariantList cratesTaken READ cratesTaken NOTIFY advanced)
    Q_PROPERTY(QVariantMap presence READ presence NOTIFY advanced)
    Q_PROPERTY(double blinkerOpacity READ blinkerOpacity NOTIFY advanced)
    Q_PROPERTY(bool celebrating READ celebrating NOTIFY advanced)
    Q_PROPERTY(double yawDegrees READ yawDegrees NOTIFY advanced)
    Q_PROPERTY(double pitchDegrees READ pitchDegrees NOTIFY advanced)
    Q_PROPERTY(double zoom READ zoom NOTIFY advanced)
    Q_PROPERTY(double panX READ panX NOTIFY advanced)
    Q_PROPERTY(double panZ READ panZ NOTIFY advanced)

public:
    // How far the camera may tilt, in radians below the horizon.
    static constexpr double flattestPitch = -0.12;
    static constexpr double steepestPitch = -1.25;
    static constexpr double panLimit = 420;

    explicit CityFrame(QObject* parent = nullptr);

    [[nodiscard]] DiskCitySceneController* controller() const { return m_controller; }
    void setController(DiskCitySceneController* controller);

    // Seconds of the stage's looping motion; it stands still under reduced motion.
    [[nodiscard]] double loopTime() const { return m_loopTime; }
    // 0 without a trip, then walking, grabbing, carrying and tossing.
    [[nodiscard]] int haulerPhase() const;
    [[nodiscard]] double haulerProgress() const;
    // The crate of the running trip, -1 without one.
    [[nodiscard]] int tripCrate() const;
    [[nodiscard]] QVariantList cratesTaken() const;
    // Each robot's way on stage, 0 to 1, by its id.
    [[nodiscard]] QVariantMap presence() const;
    // The truck's blinker: a calm or fast eased pulse between 0.2 and 0.9, steady when still.
    [[nodiscard]] double blinkerOpacity() const;
    [[nodiscard]] bool celebrating() const;
    [[nodiscard]] double yawDegrees() const;
    [[nodiscard]] double pitchDegrees() const;
    [[nodiscard]] double zoom() const;
    [[nodiscard]] double panX() const;
    [[nodiscard]] double panZ() const;

    // Turns the camera by a drag, keeping it above the ground.
    Q_INVOKABLE void rotate(double yawRadians, double pitchRadians);
    // Moves the camera over the ground by a drag measured along the view's right and up.
    Q_INVOKABLE void pan(double right, double forward);
    Q_INVOKABLE void resetCamera();

Q_SIGNALS:
    void controllerChanged();
    void advanced();

private:
    void advance();

    QPointer<DiskCitySceneController> m_controller;
    QElapsedTimer m_clock;
    double m_lastFrame = 0;
    double m_loopTime = 0;
};

} // namespace kestrow
