import QtQuick
import QtQuick3D
import Kestrow.Gui

// The utility truck parked on the avenue, its roof blinker pulsing calmly, and fast during a
// Sweep.
Node {
    id: truck
    property real blinkerOpacity: 0.9
    property bool dark: false

    Block {
        base: Qt.vector3d(-18, 8, 0)
        size: Qt.vector3d(64, 40, 36)
        color: truck.dark ? "#8c8f96" : "#eceae4"
    }
    Block {
        base: Qt.vector3d(34, 8, 0)
        size: Qt.vector3d(30, 30, 34)
        color: "#e07a4a"
    }
    Model {
        source: "#Cylinder"
        instancing: CityInstances {
            entries: [[-34, 9, 19, 0.18, 0.06, 0.18, "#ffffff"], [-34, 9, -19, 0.18, 0.06, 0.18, "#ffffff"],
                      [32, 9, 19, 0.18, 0.06, 0.18, "#ffffff"], [32, 9, -19, 0.18, 0.06, 0.18, "#ffffff"]]
        }
        eulerRotation.x: 90
        materials: PrincipledMaterial { baseColor: "#26272b" }
    }
    Block {
        shape: "#Sphere"
        base: Qt.vector3d(34, 38, 0)
        size: Qt.vector3d(10, 10, 10)
        color: "#ffb020"
        glow: Qt.vector3d(1, 0.6, 0.1).times(truck.blinkerOpacity)
        alpha: truck.blinkerOpacity
    }
}
