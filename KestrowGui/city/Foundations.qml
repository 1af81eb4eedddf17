import QtQuick
import QtQuick3D

// The slab the city stands on, and its darker plinth.
Node {
    id: foundations
    property real width: 1400
    property real depth: 700
    property bool dark: false

    Block {
        base: Qt.vector3d(0, -60, 0)
        size: Qt.vector3d(foundations.width + 40, 46, foundations.depth + 40)
        color: foundations.dark ? "#2c2a30" : "#8c7f6e"
        castsShadows: false
    }
    Block {
        base: Qt.vector3d(0, -14, 0)
        size: Qt.vector3d(foundations.width, 14, foundations.depth)
        color: foundations.dark ? "#3b4038" : "#b9c4a4"
        roughness: 1
        castsShadows: false
    }
}
