import QtQuick
import QtQuick3D
import Kestrow.Gui

// The robots that walk: the patrol on the front avenue, the sweeper that comes out for disk
// scans and Sweeps, and the engineer that comes to the core for every analysis. Each walks on
// from the edge of the city as its presence goes from 0 to 1, and off again.
Node {
    id: robots
    required property CityFrame frame
    property bool dark: false
    property vector3d devPost
    property vector3d corePost

    function walk(from, to, presence) {
        return Qt.vector3d(from.x + (to.x - from.x) * presence, 0, from.z + (to.z - from.z) * presence)
    }
    function presenceOf(id) {
        const value = robots.frame.presence[id]
        return value === undefined ? 0 : value
    }

    readonly property real patrolPresence: presenceOf("patrol_bot")
    readonly property real sweeperPresence: presenceOf("sweeper_bot")
    readonly property real engineerPresence: presenceOf("engineer_bot")
    readonly property real stroll: Math.sin(frame.loopTime * 0.35)

    RobotFigure {
        kind: "patrol"
        agent: "patrol_bot"
        visible: robots.patrolPresence > 0
        position: robots.walk(Qt.vector3d(760, 0, 190), Qt.vector3d(120 + robots.stroll * 260, 0, 190),
                              robots.patrolPresence)
        eulerRotation.y: Math.cos(robots.frame.loopTime * 0.35) >= 0 ? 90 : -90
        bodyColor: robots.dark ? "#5e6a80" : "#e8e6df"
        accent: "#4a6fa5"
        loopTime: robots.frame.loopTime
    }
    RobotFigure {
        kind: "sweeper"
        agent: "sweeper_bot"
        visible: robots.sweeperPresence > 0
        position: robots.walk(Qt.vector3d(-30, 0, 400), Qt.vector3d(-30, 0, 40 + robots.stroll * 90),
                              robots.sweeperPresence)
        eulerRotation.y: robots.sweeperPresence < 1 ? 180 : Math.cos(robots.frame.loopTime * 0.35) >= 0 ? 0 : 180
        bodyColor: robots.dark ? "#4f7a70" : "#7cc7b3"
        accent: "#2f8f7a"
        loopTime: robots.frame.loopTime
    }
    RobotFigure {
        kind: "engineer"
        agent: "engineer_bot"
        visible: robots.engineerPresence > 0
        position: robots.walk(Qt.vector3d(760, 0, 30), Qt.vector3d(robots.corePost.x + 95, 0, robots.corePost.z + 10),
                              robots.engineerPresence)
        eulerRotation.y: robots.engineerPresence < 1 ? -90 : -90 + Math.sin(robots.frame.loopTime * 0.8) * 25
        bodyColor: robots.dark ? "#80704a" : "#f2c14e"
        accent: "#d9902a"
        loopTime: robots.frame.loopTime
    }
}
