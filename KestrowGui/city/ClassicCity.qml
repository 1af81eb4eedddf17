import QtQuick
import QtQuick3D
import Kestrow.Gui

// The classic city: districts on their foundations, the road network with its street props,
// the robots, the utility truck, the radar beam and the celebration. Ground units: the city is
// 1400 wide and 520 deep, the chips' unit square laid over it.
Node {
    id: city
    required property var controller
    required property CityFrame frame
    property bool dark: false
    property int hoveredDistrict: 0

    readonly property real groundWidth: 1400
    readonly property real groundDepth: 520

    function place(u, v) {
        return Qt.vector3d((u - 0.5) * city.groundWidth, 0, (v - 0.5) * city.groundDepth)
    }
    function anchorFor(id) {
        switch (id) {
        case 1: return system.anchor
        case 2: return apps.anchor
        case 3: return dev.anchor
        case 4: return core.anchor
        case 5: return dock.anchor
        }
        return null
    }

    Foundations { width: city.groundWidth; depth: city.groundDepth; dark: city.dark }
    Roads { dark: city.dark }
    StreetProps { dark: city.dark; loopTime: city.frame.loopTime }

    SystemDistrict {
        id: system
        position: city.place(0.13, 0.24)
        towerScale: city.controller ? city.controller.systemScale : 1
        hovered: city.hoveredDistrict === 1
        dark: city.dark
    }
    AppsDistrict {
        id: apps
        position: city.place(0.38, 0.08)
        towerScale: city.controller ? city.controller.appsScale : 1
        hovered: city.hoveredDistrict === 2
        dark: city.dark
    }
    DevQuarter {
        id: dev
        position: city.place(0.56, 0.38)
        hovered: city.hoveredDistrict === 3
        dark: city.dark
        loopTime: city.frame.loopTime
        busy: city.controller ? city.controller.effScanning : false
    }
    AiCore {
        id: core
        position: city.place(0.63, 0.56)
        hovered: city.hoveredDistrict === 4
        dark: city.dark
        loopTime: city.frame.loopTime
    }
    TrashDock {
        id: dock
        position: city.place(0.11, 0.58)
        hovered: city.hoveredDistrict === 5
        dark: city.dark
        frame: city.frame
    }
    CityRobots {
        frame: city.frame
        dark: city.dark
        devPost: city.place(0.56, 0.38)
        corePost: city.place(0.63, 0.56)
    }
    UtilityTruck {
        position: Qt.vector3d(430, 0, 215)
        blinkerOpacity: city.frame.blinkerOpacity
        dark: city.dark
    }
    RadarBeam {
        position: city.place(0.63, 0.56)
        shown: city.controller ? city.controller.radarBeamVisible : false
        sweeping: city.controller ? city.controller.mode === 1 : false
        loopTime: city.frame.loopTime
    }
    Sparkles {
        y: 60
        shown: city.frame.celebrating
        loopTime: city.frame.loopTime
    }
}
