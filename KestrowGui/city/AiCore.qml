import QtQuick
import QtQuick3D
import Kestrow.Gui

// The AI core: a round plaza with server racks about a glowing core that breathes slowly.
Node {
    id: core
    property bool hovered: false
    property bool dark: false
    property real loopTime: 0
    readonly property alias anchor: top
    readonly property real breath: (1 + Math.sin(loopTime * 1.6)) / 2
    readonly property vector3d glow: hovered ? Qt.vector3d(0.35, 0.25, 0.02) : Qt.vector3d(0, 0, 0)

    Block {
        shape: "#Cylinder"
        size: Qt.vector3d(136, 12, 136)
        color: core.dark ? "#45423a" : "#d8cfb7"
        glow: core.glow
        district: 4
    }
    Model {
        source: "#Cube"
        instancing: CityInstances {
            entries: {
                const list = []
                for (let i = 0; i < 6; ++i) {
                    const angle = i * Math.PI / 3 + Math.PI / 6
                    list.push([Math.cos(angle) * 46, 36, Math.sin(angle) * 46, 0.16, 0.48, 0.2, "#ffffff",
                               -angle * 180 / Math.PI])
                }
                return list
            }
        }
        materials: PrincipledMaterial { baseColor: core.dark ? "#2f3540" : "#4a5260"; roughness: 0.5 }
    }
    Block {
        shape: "#Sphere"
        base: Qt.vector3d(0, 20, 0)
        size: Qt.vector3d(44, 44, 44)
        color: "#f2b33d"
        glow: Qt.vector3d(0.6 + 0.4 * core.breath, 0.4 + 0.25 * core.breath, 0.05)
        district: 4
    }
    Node {
        id: top
        position: Qt.vector3d(30, 70, 0)
    }
}
