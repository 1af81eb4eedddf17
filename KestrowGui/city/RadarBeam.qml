import QtQuick
import QtQuick3D

// The scan's radar: a translucent beam that turns over the city from the core while a scan
// runs, and fades when it ends.
Node {
    id: radar
    property bool shown: false
    property bool sweeping: false
    property real loopTime: 0
    property real strength: sweeping ? 1 : 0

    visible: shown
    Behavior on strength {
        NumberAnimation { duration: 600 }
    }

    Node {
        y: 110
        eulerRotation.y: radar.loopTime * 120
        Block {
            shape: "#Cone"
            eulerRotation.z: 90
            position: Qt.vector3d(-170, 0, 0)
            scale: Qt.vector3d(0.8, 3.4, 0.12)
            color: "#6fe3d3"
            glow: Qt.vector3d(0.2, 0.8, 0.7)
            alpha: 0.28 * radar.strength
        }
    }
    Block {
        shape: "#Cylinder"
        base: Qt.vector3d(0, 14, 0)
        size: Qt.vector3d(140 + (radar.loopTime * 160) % 260, 1, 140 + (radar.loopTime * 160) % 260)
        color: "#6fe3d3"
        glow: Qt.vector3d(0.2, 0.8, 0.7)
        alpha: 0.35 * radar.strength * (1 - ((radar.loopTime * 160) % 260) / 260)
    }
}
