import QtQuick
import QtQuick3D
import Kestrow.Gui

// The developer's open-air loft: a raised floor, a desk with twin displays, and the developer
// at work, typing faster while an analysis runs.
Node {
    id: quarter
    property bool hovered: false
    property bool dark: false
    property bool busy: false
    property real loopTime: 0
    readonly property alias anchor: top
    readonly property vector3d glow: hovered ? Qt.vector3d(0.1, 0.3, 0.3) : Qt.vector3d(0, 0, 0)

    Block {
        base: Qt.vector3d(-14, 0, 0)
        size: Qt.vector3d(120, 24, 90)
        color: quarter.dark ? "#3e4a4c" : "#a9b9b4"
        glow: quarter.glow
        district: 3
    }
    Block {
        base: Qt.vector3d(0, 24, -10)
        size: Qt.vector3d(70, 22, 30)
        color: quarter.dark ? "#5c4636" : "#9c6b43"
        glow: quarter.glow
        district: 3
    }
    // Twin displays.
    Model {
        source: "#Cube"
        instancing: CityInstances {
            entries: [[-16, 58, -20, 0.28, 0.2, 0.02, "#ffffff", 8], [16, 58, -20, 0.28, 0.2, 0.02, "#ffffff", -8]]
        }
        materials: PrincipledMaterial {
            baseColor: "#1f3140"
            emissiveFactor: quarter.busy ? Qt.vector3d(0.45, 0.95, 0.85) : Qt.vector3d(0.25, 0.55, 0.75)
        }
    }
    RobotFigure {
        kind: "dev"
        agent: "dev_worker"
        seated: true
        position: Qt.vector3d(0, 24, 16)
        eulerRotation.y: 180
        bodyColor: quarter.dark ? "#7a8890" : "#e4ecea"
        accent: "#3bb3a2"
        loopTime: quarter.loopTime
        busyness: quarter.busy ? 1 : 0
    }
    Node {
        id: top
        position: Qt.vector3d(-20, 150, 0)
    }
}
