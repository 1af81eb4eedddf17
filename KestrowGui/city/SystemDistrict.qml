import QtQuick
import QtQuick3D
import Kestrow.Gui

// The system district: a broad block with its tower, whose height follows the system's share.
Node {
    id: district
    property real towerScale: 1
    property bool hovered: false
    property bool dark: false
    readonly property alias anchor: top
    readonly property vector3d glow: hovered ? Qt.vector3d(0.35, 0.16, 0.04) : Qt.vector3d(0, 0, 0)

    Block {
        size: Qt.vector3d(190, 10, 150)
        color: district.dark ? "#4a4650" : "#d6cbb9"
    }
    Block {
        base: Qt.vector3d(-30, 10, 20)
        size: Qt.vector3d(110, 55, 90)
        color: district.dark ? "#5b5566" : "#e9e0d0"
        glow: district.glow
        district: 1
    }
    Node {
        y: 10
        scale.y: district.towerScale
        Block {
            base: Qt.vector3d(45, 0, -25)
            size: Qt.vector3d(70, 150, 70)
            color: district.dark ? "#6c5a52" : "#e07a4a"
            glow: district.glow
            district: 1
        }
        Model {
            source: "#Cube"
            castsShadows: false
            instancing: CityInstances {
                entries: {
                    const list = []
                    for (let level = 0; level < 6; ++level)
                        list.push([45, 26 + level * 22, 11, 0.56, 0.07, 0.02, "#ffffff"])
                    return list
                }
            }
            materials: PrincipledMaterial {
                baseColor: district.dark ? "#ffd68a" : "#fdf3df"
                emissiveFactor: district.dark ? Qt.vector3d(0.9, 0.7, 0.35) : Qt.vector3d(0.1, 0.1, 0.1)
            }
        }
        Node {
            id: top
            position: Qt.vector3d(45, 165, -25)
        }
    }
}
