import QtQuick
import QtQuick3D
import Kestrow.Gui

// The road network: asphalt, lane marks and crossings, each kind one instanced draw.
Node {
    id: roads
    property bool dark: false

    // A flat strip centred on x, z.
    function strip(x, z, w, d, h, color) {
        return [x, h / 2, z, w / 100, h / 100, d / 100, color]
    }
    readonly property var asphalt: [
        strip(0, 205, 1400, 60, 2, "#ffffff"),    // the front avenue
        strip(185, -130, 1030, 40, 2, "#ffffff"), // the back street
        strip(-380, 30, 46, 290, 2, "#ffffff"),   // west street
        strip(-30, 40, 42, 310, 2, "#ffffff"),    // middle street
        strip(330, -28, 50, 466, 2, "#ffffff")    // east street
    ]
    readonly property var marks: {
        const list = []
        for (let x = -660; x <= 660; x += 60)
            list.push(strip(x, 205, 30, 4, 3, "#ffffff"))
        for (let z = -240; z <= 150; z += 50)
            list.push(strip(330, z, 4, 24, 3, "#ffffff"))
        for (let i = 0; i < 6; ++i) {
            list.push(strip(-380 - 20 + i * 8, 166, 4, 14, 3, "#ffffff"))
            list.push(strip(330 - 24 + i * 10, 166, 5, 16, 3, "#ffffff"))
        }
        return list
    }

    Model {
        source: "#Cube"
        castsShadows: false
        instancing: CityInstances { entries: roads.asphalt }
        materials: PrincipledMaterial { baseColor: roads.dark ? "#26272c" : "#5d5f66"; roughness: 0.95 }
    }
    Model {
        source: "#Cube"
        castsShadows: false
        instancing: CityInstances { entries: roads.marks }
        materials: PrincipledMaterial {
            baseColor: "#f3e6c0"
            roughness: 0.9
            emissiveFactor: roads.dark ? Qt.vector3d(0.25, 0.22, 0.15) : Qt.vector3d(0, 0, 0)
        }
    }
}
