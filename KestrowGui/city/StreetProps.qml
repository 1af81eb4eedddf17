import QtQuick
import QtQuick3D
import Kestrow.Gui

// Potted trees, street lamps, fire hydrants, manhole covers and storm drains along the roads.
// Each kind of part is one instanced draw, however many of it stand in the city.
Node {
    id: props
    property bool dark: false
    property real loopTime: 0

    readonly property var treeSpots: [
        [-650, 158], [-580, 158], [-480, 158], [-300, 158], [-200, 158], [-110, 158], [40, 158], [120, 158],
        [280, 130], [420, 120], [500, 110], [590, 130], [650, 40], [450, -20], [540, -60], [620, -150],
        [430, -200], [520, -225], [250, -215], [-330, -220], [-450, -235]
    ]
    readonly property var lampSpots: [[-440, 246], [-260, 246], [-100, 246], [60, 246], [220, 246], [380, 246],
        [540, 246], [368, 60], [368, -90], [-344, 80]]
    readonly property var hydrantSpots: [[-330, 170], [-60, 170], [292, 120], [368, -40]]
    readonly property var manholeSpots: [[-380, 205], [-30, 205], [200, 205], [330, 90], [330, -200], [-380, 60]]
    readonly property var drainSpots: [[-600, 172], [-150, 172], [100, 172], [470, 172], [354, -10]]

    function entries(spots, y, sx, sy, sz, color) {
        return spots.map(spot => [spot[0], y, spot[1], sx, sy, sz, color])
    }

    // Trees: a pot, a trunk and a round crown.
    Model {
        source: "#Cylinder"
        instancing: CityInstances { entries: props.entries(props.treeSpots, 7, 0.16, 0.14, 0.16, "#ffffff") }
        materials: PrincipledMaterial { baseColor: props.dark ? "#5a4038" : "#b0644a" }
    }
    Model {
        source: "#Cylinder"
        instancing: CityInstances { entries: props.entries(props.treeSpots, 22, 0.04, 0.2, 0.04, "#ffffff") }
        materials: PrincipledMaterial { baseColor: "#6b4a2e" }
    }
    Model {
        source: "#Sphere"
        instancing: CityInstances {
            entries: props.treeSpots.map((spot, i) => [spot[0], 42, spot[1], 0.3, 0.34 + (i % 3) * 0.04, 0.3,
                                                       i % 2 ? "#ffffff" : "#dfe9c8"])
        }
        materials: PrincipledMaterial { baseColor: props.dark ? "#3f6a4a" : "#6fae5a"; roughness: 0.9 }
    }
    // Lamps: a pole and a head, lit at night.
    Model {
        source: "#Cylinder"
        instancing: CityInstances { entries: props.entries(props.lampSpots, 25, 0.03, 0.5, 0.03, "#ffffff") }
        materials: PrincipledMaterial { baseColor: "#4a4d55"; metalness: 0.4; roughness: 0.5 }
    }
    Model {
        source: "#Sphere"
        instancing: CityInstances { entries: props.entries(props.lampSpots, 52, 0.09, 0.07, 0.09, "#ffffff") }
        materials: PrincipledMaterial {
            baseColor: "#fff4d0"
            emissiveFactor: props.dark ? Qt.vector3d(1, 0.85, 0.5) : Qt.vector3d(0.2, 0.18, 0.12)
        }
    }
    Model {
        source: "#Cylinder"
        instancing: CityInstances { entries: props.entries(props.hydrantSpots, 7, 0.07, 0.14, 0.07, "#ffffff") }
        materials: PrincipledMaterial { baseColor: "#d43c2c"; roughness: 0.5 }
    }
    Model {
        source: "#Cylinder"
        castsShadows: false
        instancing: CityInstances { entries: props.entries(props.manholeSpots, 2.5, 0.18, 0.01, 0.18, "#ffffff") }
        materials: PrincipledMaterial { baseColor: "#3a3a3e"; metalness: 0.6; roughness: 0.4 }
    }
    Model {
        source: "#Cube"
        castsShadows: false
        instancing: CityInstances { entries: props.entries(props.drainSpots, 2.5, 0.22, 0.01, 0.08, "#ffffff") }
        materials: PrincipledMaterial { baseColor: "#202226"; metalness: 0.5; roughness: 0.5 }
    }
}
