import QtQuick
import QtQuick3D
import Kestrow.Gui

// The freight terminal: a container port cut open at the water, two container yards whose
// stacks follow the model's scales, high-bay racks, a crane over a moored ship, the shredder
// dock, and two AMRs on their guide lines. It shows the model's own flags as they are: rovers
// read the yard while a scan runs, the crane and the carrier work while a Sweep runs, and a
// green lamp on the shredder tells that a Sweep has been done.
Node {
    id: terminal
    required property var controller
    required property CityFrame frame
    property bool dark: false
    property int hoveredDistrict: 0

    readonly property real groundWidth: 1400
    readonly property real groundDepth: 520
    readonly property bool scanning: controller ? controller.isScanning : false
    readonly property bool cleaning: controller ? controller.isCleaning : false
    readonly property bool cleaned: controller ? controller.hasCleaned : false
    readonly property real t: frame.loopTime

    function place(u, v) {
        return Qt.vector3d((u - 0.5) * terminal.groundWidth, 0, (v - 0.5) * terminal.groundDepth)
    }
    function anchorFor(id) {
        switch (id) {
        case 1: return yardA.anchor
        case 2: return yardB.anchor
        case 3: return racksTop
        case 4: return craneTop
        case 5: return shredderTop
        }
        return null
    }
    function glowFor(id) {
        return hoveredDistrict === id ? Qt.vector3d(0.3, 0.18, 0.05) : Qt.vector3d(0, 0, 0)
    }
    function yardEntries(columns, rows, levels) {
        const colors = ["#d9573b", "#2f7fb5", "#e0a93a", "#3c9c78", "#8a5cb0", "#c8c3b8"]
        const list = []
        for (let level = 0; level < levels; ++level)
            for (let column = 0; column < columns; ++column)
                for (let row = 0; row < rows; ++row) {
                    if ((column * 7 + row * 3 + level * 5) % 9 === 0 && level > 0)
                        continue
                    list.push([(column - (columns - 1) / 2) * 62, 13 + level * 26, (row - (rows - 1) / 2) * 28,
                               0.6, 0.25, 0.26, colors[(column * 5 + row * 3 + level) % colors.length]])
                }
        return list
    }

    // The quay, its plinth, and the water at the front, cut open to show its depth.
    Block {
        base: Qt.vector3d(0, -70, -80)
        size: Qt.vector3d(terminal.groundWidth + 40, 56, 400)
        color: terminal.dark ? "#26272c" : "#6f6a62"
        castsShadows: false
    }
    Block {
        base: Qt.vector3d(0, -78, 190)
        size: Qt.vector3d(terminal.groundWidth + 40, 8, 140)
        color: terminal.dark ? "#3a3426" : "#c2a878"
    }
    Block {
        base: Qt.vector3d(0, -14, -70)
        size: Qt.vector3d(terminal.groundWidth, 14, 380)
        color: terminal.dark ? "#3a3d44" : "#b9b6ae"
        roughness: 1
        castsShadows: false
    }
    Block {
        base: Qt.vector3d(0, -70, 190)
        size: Qt.vector3d(terminal.groundWidth + 40, 60, 140)
        color: terminal.dark ? "#1d3f5c" : "#3f86b8"
        roughness: 0.3
    }
    // Guide lines of the rovers.
    Model {
        source: "#Cube"
        castsShadows: false
        instancing: CityInstances {
            entries: [[0, 1, 80, 13, 0.02, 0.04, "#ffffff"], [0, 1, -40, 13, 0.02, 0.04, "#ffffff"],
                      [-650, 1, 20, 0.04, 0.02, 1.2, "#ffffff"], [650, 1, 20, 0.04, 0.02, 1.2, "#ffffff"]]
        }
        materials: PrincipledMaterial { baseColor: "#f2c744"; emissiveFactor: Qt.vector3d(0.3, 0.25, 0.05) }
    }

    // Container yards: the system's and the applications'.
    Node {
        id: yardA
        readonly property alias anchor: yardATop
        position: terminal.place(0.13, 0.24)
        Block {
            size: Qt.vector3d(230, 4, 120)
            color: terminal.dark ? "#4a4a50" : "#9d9a92"
            glow: terminal.glowFor(1)
            district: 1
        }
        Node {
            scale.y: terminal.controller ? terminal.controller.systemScale : 1
            Model {
                source: "#Cube"
                instancing: CityInstances { entries: terminal.yardEntries(3, 3, 4) }
                materials: PrincipledMaterial { baseColor: "#ffffff"; roughness: 0.6 }
            }
            Node { id: yardATop; y: 230 }
        }
    }
    Node {
        id: yardB
        readonly property alias anchor: yardBTop
        position: terminal.place(0.38, 0.08)
        Block {
            size: Qt.vector3d(270, 4, 90)
            color: terminal.dark ? "#4a4a50" : "#9d9a92"
            glow: terminal.glowFor(2)
            district: 2
        }
        Node {
            scale.y: terminal.controller ? terminal.controller.appsScale : 1
            Model {
                source: "#Cube"
                instancing: CityInstances { entries: terminal.yardEntries(4, 2, 5) }
                materials: PrincipledMaterial { baseColor: "#ffffff"; roughness: 0.6 }
            }
            Node { id: yardBTop; y: 155 }
        }
    }

    // High-bay racks with their pallets.
    Node {
        position: terminal.place(0.56, 0.38)
        Block {
            size: Qt.vector3d(150, 4, 80)
            color: terminal.dark ? "#3f4a4c" : "#a6b3b0"
            glow: terminal.glowFor(3)
            district: 3
        }
        Model {
            source: "#Cube"
            instancing: CityInstances {
                entries: {
                    const list = []
                    for (let x = -70; x <= 70; x += 35)
                        for (const z of [-34, 34])
                            list.push([x, 60, z, 0.04, 1.2, 0.04, "#ffffff"])
                    for (let level = 1; level <= 4; ++level)
                        for (const z of [-34, 34])
                            list.push([0, level * 28, z, 1.44, 0.03, 0.16, "#ffffff"])
                    return list
                }
            }
            materials: PrincipledMaterial { baseColor: "#3d6fb0"; metalness: 0.3; roughness: 0.5 }
        }
        Model {
            source: "#Cube"
            instancing: CityInstances {
                entries: {
                    const list = []
                    for (let level = 0; level < 4; ++level)
                        for (let slot = 0; slot < 4; ++slot)
                            for (const z of [-34, 34])
                                if ((level + slot + (z > 0 ? 1 : 0)) % 3 !== 0)
                                    list.push([-52 + slot * 35, 10 + level * 28, z, 0.26, 0.16, 0.13,
                                               (slot + level) % 2 ? "#c99a5b" : "#b07d43"])
                    return list
                }
            }
            materials: PrincipledMaterial { baseColor: "#ffffff" }
        }
        Node { id: racksTop; position: Qt.vector3d(-30, 175, 0) }
    }

    // The ship and the crane over it; the trolley runs out and back while a Sweep runs.
    Node {
        position: Qt.vector3d(60, 0, 190)
        Block {
            base: Qt.vector3d(0, -30, 0)
            size: Qt.vector3d(480, 34, 80)
            color: terminal.dark ? "#5a2a2a" : "#9c3b31"
        }
        Block {
            base: Qt.vector3d(200, 4, 0)
            size: Qt.vector3d(50, 40, 60)
            color: "#f0ece4"
        }
        Model {
            source: "#Cube"
            instancing: CityInstances {
                entries: {
                    const colors = ["#2f7fb5", "#e0a93a", "#d9573b", "#3c9c78"]
                    const list = []
                    for (let i = 0; i < 10; ++i)
                        list.push([-190 + i * 38, 4 + 12 + (i % 3 === 0 ? 24 : 0), (i % 2) * 26 - 13, 0.36, 0.24, 0.24,
                                   colors[i % 4]])
                    return list
                }
            }
            materials: PrincipledMaterial { baseColor: "#ffffff" }
        }
    }
    Node {
        id: crane
        position: terminal.place(0.63, 0.56)
        readonly property real reach: terminal.cleaning ? (1 - Math.cos(terminal.t * 1.2)) / 2 : 0
        Model {
            source: "#Cube"
            instancing: CityInstances {
                entries: [[-40, 80, -30, 0.08, 1.6, 0.08, "#ffffff"], [40, 80, -30, 0.08, 1.6, 0.08, "#ffffff"],
                          [-40, 80, 30, 0.08, 1.6, 0.08, "#ffffff"], [40, 80, 30, 0.08, 1.6, 0.08, "#ffffff"],
                          [0, 164, 60, 0.24, 0.08, 2.4, "#ffffff"], [0, 150, -30, 1.0, 0.1, 0.1, "#ffffff"]]
            }
            materials: PrincipledMaterial { baseColor: "#e0a93a"; roughness: 0.5 }
        }
        Block {
            size: Qt.vector3d(110, 6, 90)
            color: terminal.dark ? "#4a4a50" : "#9d9a92"
            glow: terminal.glowFor(4)
            district: 4
        }
        Node {
            position: Qt.vector3d(0, 150, -40 + crane.reach * 180)
            Block {
                base: Qt.vector3d(0, 4, 0)
                size: Qt.vector3d(30, 12, 24)
                color: "#3a3a3e"
                glow: terminal.glowFor(4)
                district: 4
            }
            Block {
                base: Qt.vector3d(0, -60 - crane.reach * 20, 0)
                size: Qt.vector3d(2, 64 + crane.reach * 20, 2)
                color: "#222222"
            }
            Block {
                base: Qt.vector3d(0, -66 - crane.reach * 20, 0)
                size: Qt.vector3d(60, 24, 26)
                visible: terminal.cleaning
                color: "#d9573b"
            }
        }
        Node { id: craneTop; position: Qt.vector3d(40, 130, 0) }
    }

    // The shredder dock: a hopper where the carrier tips its loads.
    Node {
        id: shredder
        position: terminal.place(0.11, 0.58)
        Block {
            size: Qt.vector3d(160, 8, 100)
            color: terminal.dark ? "#3d3a36" : "#a89e8c"
            glow: terminal.glowFor(5)
            district: 5
        }
        Block {
            base: Qt.vector3d(-20, 8, -10)
            size: Qt.vector3d(70, 60, 60)
            color: terminal.dark ? "#4c5560" : "#6f7d8c"
            glow: terminal.glowFor(5)
            district: 5
        }
        Block {
            shape: "#Cone"
            base: Qt.vector3d(-20, 68, -10)
            size: Qt.vector3d(80, 26, 80)
            eulerRotation.x: 180
            color: "#8a96a3"
        }
        Block {
            shape: "#Sphere"
            base: Qt.vector3d(30, 8, -30)
            size: Qt.vector3d(12, 12, 12)
            color: terminal.cleaned ? "#4fd18b" : "#6c6c6c"
            glow: terminal.cleaned ? Qt.vector3d(0.2, 0.9, 0.4) : Qt.vector3d(0, 0, 0)
        }
        Node { id: shredderTop; y: 70 }
    }

    // The rovers: the inspector loops the quay, faster while a scan runs; the carrier shuttles
    // between the yard and the hopper while a Sweep runs, and waits on its pad otherwise.
    RobotFigure {
        kind: "amr"
        agent: "amr_inspector"
        readonly property real lap: terminal.t * (terminal.scanning ? 0.5 : 0.15)
        position: Qt.vector3d(Math.sin(lap) * 600, 0, 80)
        eulerRotation.y: Math.cos(lap) >= 0 ? 90 : -90
        bodyColor: terminal.dark ? "#6a6f78" : "#e8e6df"
        accent: "#e07a4a"
        loopTime: terminal.t
    }
    RobotFigure {
        kind: "amr"
        agent: "amr_hauler"
        readonly property real shuttle: terminal.cleaning ? (1 - Math.cos(terminal.t * 0.9)) / 2 : 0
        position: Qt.vector3d(-470 + shuttle * 330, 0, -40)
        eulerRotation.y: Math.sin(terminal.t * 0.9) >= 0 ? 90 : -90
        bodyColor: terminal.dark ? "#4f7a70" : "#7cc7b3"
        accent: "#2f8f7a"
        loopTime: terminal.t
    }
}
