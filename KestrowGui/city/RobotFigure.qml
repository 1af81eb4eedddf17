import QtQuick
import QtQuick3D

// A robot of the city, small and blocky: a body, a head with a lit visor, and the tool of its
// trade. `kind` picks the tool: "patrol", "sweeper", "dev", "hauler", "engineer" or "amr".
Node {
    id: robot
    property string kind: "patrol"
    property string agent: ""
    property color bodyColor: "#d9d4c7"
    property color accent: "#e07a4a"
    property bool seated: false
    property real loopTime: 0
    property real busyness: 0
    property real emoteProgress: 0

    readonly property bool rover: kind === "amr"
    readonly property real hop: Math.sin(emoteProgress * Math.PI) * (kind === "hauler" ? 6 : 22)

    // Plays the robot's emote once: a hop with a turn, and the tool's own gesture.
    function emote() {
        emoteAnimation.restart()
    }

    NumberAnimation {
        id: emoteAnimation
        target: robot
        property: "emoteProgress"
        from: 0
        to: 1
        duration: 1200
        easing.type: Easing.InOutQuad
        onFinished: robot.emoteProgress = 0
    }

    Node {
        y: robot.hop + (robot.seated ? -8 : 0)
        eulerRotation.y: robot.emoteProgress * (robot.kind === "dev" ? 0 : 360)

        Block {
            base: Qt.vector3d(0, robot.rover ? 4 : 8, 0)
            size: robot.rover ? Qt.vector3d(44, 14, 34) : Qt.vector3d(24, 26, 18)
            color: robot.bodyColor
            agent: robot.agent
        }
        Block {
            base: Qt.vector3d(0, robot.rover ? 18 : 35 + (robot.kind === "dev" ? Math.sin(robot.emoteProgress * 12) * 2 : 0), 0)
            size: robot.rover ? Qt.vector3d(16, 8, 16) : Qt.vector3d(20, 16, 16)
            color: robot.accent
            glow: Qt.vector3d(0.15, 0.1, 0.05)
            agent: robot.agent
        }
        Block {
            base: Qt.vector3d(0, robot.rover ? 20 : 40, robot.rover ? 8.5 : 8.5)
            size: Qt.vector3d(robot.rover ? 10 : 14, 4, 1)
            color: "#1d2b33"
            glow: Qt.vector3d(0.2, 0.9, 0.85)
        }
        // The tool: a brush, forks, a tablet, a keyboard's arms, an antenna or a lidar.
        Block {
            shape: robot.kind === "sweeper" || robot.rover ? "#Cylinder" : "#Cube"
            base: robot.kind === "sweeper" ? Qt.vector3d(0, 0, 12)
                : robot.kind === "hauler" ? Qt.vector3d(0, 4 + robot.emoteProgress * 20, 16)
                : robot.kind === "engineer" ? Qt.vector3d(12, 22, 8)
                : robot.kind === "dev" ? Qt.vector3d(0, 20 + Math.abs(Math.sin(robot.loopTime * (6 + 10 * robot.busyness))) * 2, 11)
                : robot.rover ? Qt.vector3d(0, 26, 0)
                : Qt.vector3d(0, 51, 0)
            size: robot.kind === "sweeper" ? Qt.vector3d(22, 8, 8)
                : robot.kind === "hauler" ? Qt.vector3d(22, 3, 18)
                : robot.kind === "engineer" ? Qt.vector3d(3, 12, 9)
                : robot.kind === "dev" ? Qt.vector3d(26, 5, 6)
                : robot.rover ? Qt.vector3d(8, 6, 8)
                : Qt.vector3d(2, 12, 2)
            eulerRotation.z: robot.kind === "sweeper" ? 90 : 0
            eulerRotation.x: robot.kind === "sweeper" ? robot.loopTime * 720 : 0
            color: robot.kind === "engineer" ? "#2a3a4a" : robot.accent
            glow: robot.kind === "engineer" || robot.kind === "patrol" || robot.rover
                  ? Qt.vector3d(0.3, 0.8, 0.9) : Qt.vector3d(0, 0, 0)
        }
    }
}
