import QtQuick
import QtQuick3D
import Kestrow.Gui

// The celebration after a Sweep: sparks that circle and rise over the city, one draw.
Node {
    id: sparkles
    property bool shown: false
    property real loopTime: 0

    visible: shown
    Node {
        eulerRotation.y: sparkles.loopTime * 40
        y: (sparkles.loopTime * 30) % 80
        Model {
            source: "#Cube"
            instancing: CityInstances {
                entries: {
                    const colors = ["#ffd34d", "#4fd1b8", "#ff8a4c", "#ffffff"]
                    const list = []
                    for (let i = 0; i < 48; ++i) {
                        const angle = i * 2.4
                        const radius = 80 + (i * 37) % 420
                        list.push([Math.cos(angle) * radius, 40 + (i * 53) % 160, Math.sin(angle) * radius * 0.5,
                                   0.06, 0.06, 0.06, colors[i % 4], i * 30])
                    }
                    return list
                }
            }
            materials: PrincipledMaterial {
                baseColor: "#ffffff"
                emissiveFactor: Qt.vector3d(0.9, 0.8, 0.5)
            }
        }
    }
}
