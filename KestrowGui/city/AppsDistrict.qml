import QtQuick
import QtQuick3D
import Kestrow.Gui

// The applications' tower in its setbacks; it grows with the heavier of the applications and
// the developer district.
Node {
    id: district
    property real towerScale: 1
    property bool hovered: false
    property bool dark: false
    readonly property alias anchor: top
    readonly property vector3d glow: hovered ? Qt.vector3d(0.1, 0.3, 0.3) : Qt.vector3d(0, 0, 0)

    Block {
        size: Qt.vector3d(180, 10, 90)
        color: district.dark ? "#444a50" : "#cfd3cc"
    }
    Node {
        y: 10
        scale.y: district.towerScale
        Block {
            size: Qt.vector3d(120, 115, 80)
            color: district.dark ? "#3f5f66" : "#5fa8a0"
            glow: district.glow
            district: 2
        }
        Block {
            base: Qt.vector3d(0, 115, 0)
            size: Qt.vector3d(84, 65, 64)
            color: district.dark ? "#4d7078" : "#79bdb3"
            glow: district.glow
            district: 2
        }
        Block {
            base: Qt.vector3d(0, 180, 0)
            size: Qt.vector3d(6, 40, 6)
            shape: "#Cylinder"
            color: "#c8c8c8"
        }
        Model {
            source: "#Cube"
            castsShadows: false
            instancing: CityInstances {
                entries: {
                    const list = []
                    for (let level = 0; level < 5; ++level)
                        for (let column = -1; column <= 1; ++column)
                            list.push([column * 34, 18 + level * 22, 41, 0.22, 0.1, 0.02, "#ffffff"])
                    for (let level = 0; level < 3; ++level)
                        for (let column = -1; column <= 1; column += 2)
                            list.push([column * 20, 128 + level * 16, 33, 0.2, 0.09, 0.02, "#ffffff"])
                    return list
                }
            }
            materials: PrincipledMaterial {
                baseColor: district.dark ? "#9ff3ea" : "#e8fbf8"
                emissiveFactor: district.dark ? Qt.vector3d(0.35, 0.8, 0.75) : Qt.vector3d(0.08, 0.1, 0.1)
            }
        }
        Node {
            id: top
            position: Qt.vector3d(0, 220, 0)
        }
    }
}
