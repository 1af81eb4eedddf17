import QtQuick
import QtQuick3D
import Kestrow.Gui

// The trash dock: the crate stack, the dumpster with its hinged lid, and the hauler that takes
// the crates across during a Sweep, one trip per crate: walk to the stack, grab, carry, toss.
Node {
    id: dock
    required property CityFrame frame
    property bool hovered: false
    property bool dark: false
    readonly property alias anchor: top
    readonly property vector3d glow: hovered ? Qt.vector3d(0.35, 0.16, 0.04) : Qt.vector3d(0, 0, 0)

    readonly property real floor: 12
    readonly property real crate: 22
    readonly property vector3d stackAt: Qt.vector3d(-52, floor, -24)
    readonly property vector3d pickupAt: Qt.vector3d(-22, floor, -24)
    readonly property vector3d dropAt: Qt.vector3d(12, floor, 14)
    readonly property vector3d binAt: Qt.vector3d(48, floor, 14)

    readonly property int phase: frame.haulerPhase
    readonly property real progress: frame.haulerProgress
    readonly property int tripCrate: frame.tripCrate

    function mix(a, b, t) {
        return Qt.vector3d(a.x + (b.x - a.x) * t, a.y + (b.y - a.y) * t, a.z + (b.z - a.z) * t)
    }
    // The top crate is the first to go.
    function stackSpot(index) {
        return Qt.vector3d(stackAt.x, floor + (3 - index) * crate, stackAt.z)
    }
    function forksOf(spot, turn) {
        const radians = turn * Math.PI / 180
        return Qt.vector3d(spot.x + Math.sin(radians) * 20, spot.y + 10, spot.z + Math.cos(radians) * 20)
    }

    readonly property vector3d haulerAt: phase === 1 ? mix(dropAt, pickupAt, progress)
                                       : phase === 2 ? pickupAt
                                       : phase === 3 ? mix(pickupAt, dropAt, progress)
                                       : dropAt
    readonly property real haulerTurn: phase === 1 || phase === 2 ? -90
                                     : phase === 3 ? Math.atan2(dropAt.x - pickupAt.x, dropAt.z - pickupAt.z) * 180 / Math.PI
                                     : 90
    readonly property vector3d haulAt: {
        if (phase === 2)
            return mix(stackSpot(Math.max(tripCrate, 0)), forksOf(pickupAt, -90), progress)
        if (phase === 3)
            return forksOf(haulerAt, haulerTurn)
        const from = forksOf(dropAt, 90)
        const into = Qt.vector3d(binAt.x, floor + 20, binAt.z)
        const lifted = mix(from, into, progress)
        return Qt.vector3d(lifted.x, lifted.y + Math.sin(progress * Math.PI) * 40, lifted.z)
    }

    Block {
        size: Qt.vector3d(170, 12, 140)
        color: dock.dark ? "#3d3a36" : "#b7ab97"
        glow: dock.glow
        district: 5
    }
    Repeater3D {
        model: 4
        delegate: Block {
            required property int index
            visible: !dock.frame.cratesTaken[index]
            base: dock.stackSpot(index)
            size: Qt.vector3d(dock.crate - 1, dock.crate - 1, dock.crate - 1)
            color: index % 2 ? "#b0783e" : "#c98f4e"
            glow: dock.glow
            district: 5
        }
    }
    Block {
        visible: dock.tripCrate >= 0 && dock.phase >= 2
        base: dock.haulAt
        size: Qt.vector3d(dock.crate - 1, dock.crate - 1, dock.crate - 1)
        scale: Qt.vector3d(0.21, 0.21, 0.21).times(dock.phase === 4 ? 1 - 0.5 * dock.progress : 1)
        color: "#c98f4e"
    }
    // The dumpster and its lid on a hinge at the back, open while a crate flies in.
    Block {
        base: dock.binAt
        size: Qt.vector3d(54, 34, 38)
        color: dock.dark ? "#2f5f4c" : "#3f8a63"
        glow: dock.glow
        district: 5
    }
    Node {
        position: Qt.vector3d(dock.binAt.x, dock.floor + 34, dock.binAt.z - 19)
        eulerRotation.x: dock.phase === 4 ? -Math.sin(dock.progress * Math.PI) * 110
                        : dock.phase === 3 ? -dock.progress * 30 : 0
        Block {
            base: Qt.vector3d(0, 0, 19)
            size: Qt.vector3d(56, 3, 40)
            color: dock.dark ? "#25483a" : "#2f6e4e"
        }
    }
    RobotFigure {
        kind: "hauler"
        agent: "hauler_bot"
        position: dock.haulerAt
        eulerRotation.y: dock.haulerTurn
        bodyColor: dock.dark ? "#8a7a4a" : "#f0c24a"
        accent: "#3a3a3a"
        loopTime: dock.frame.loopTime
    }
    Node {
        id: top
        position: Qt.vector3d(0, 100, 0)
    }
}
