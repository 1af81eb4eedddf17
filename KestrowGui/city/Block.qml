import QtQuick
import QtQuick3D

// One solid of the city: a primitive standing on `base` (the centre of its bottom face) with
// the given size in scene units. A block with a `district` answers the stage's hit test.
Model {
    id: block
    property vector3d base: Qt.vector3d(0, 0, 0)
    property vector3d size: Qt.vector3d(100, 100, 100)
    property color color: "white"
    property vector3d glow: Qt.vector3d(0, 0, 0)
    property real roughness: 0.8
    property real alpha: 1
    property int district: 0
    property string agent: ""
    property string shape: "#Cube"

    source: shape
    position: Qt.vector3d(base.x, base.y + size.y / 2, base.z)
    scale: Qt.vector3d(size.x / 100, size.y / 100, size.z / 100)
    pickable: district !== 0 || agent !== ""
    materials: PrincipledMaterial {
        baseColor: block.color
        roughness: block.roughness
        metalness: 0
        emissiveFactor: block.glow
        opacity: block.alpha
    }
}
