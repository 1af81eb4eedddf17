import QtQuick
import QtQuick3D
import Kestrow.Gui

// The diorama's 3D content: its lights, the camera on its yaw and pitch nodes, and the city of
// the chosen style. Everything moves with the controller's frame, never with the renderer.
Node {
    id: scene
    required property var controller
    required property CityFrame frame
    property string style: "classicCity"
    property bool dark: false
    property bool shadows: true
    property int hoveredDistrict: 0
    property bool lineup: false
    property var agents: []
    property string selectedAgent: ""
    // How far the camera stands at a zoom of 1; a narrower stage stands it further back.
    property real cameraDistance: 1400

    readonly property alias camera: camera
    readonly property alias environment: environment
    readonly property alias agentLineup: agentLineup
    readonly property bool freight: scene.style === "freightTerminal"

    // The node that carries a district's chip: 1 system, 2 apps, 3 developer, 4 review, 5 trash.
    function anchorFor(id) {
        return scene.freight ? terminal.anchorFor(id) : classic.anchorFor(id)
    }

    SceneEnvironment {
        id: environment
        backgroundMode: SceneEnvironment.Color
        clearColor: scene.dark ? "#1b1d24" : "#e7e2d8"
        antialiasingMode: SceneEnvironment.NoAA
    }

    // The camera turns about the stage's centre: yaw, then pitch, then its distance by the zoom.
    Node {
        position: Qt.vector3d(scene.frame.panX, 90, scene.frame.panZ)
        eulerRotation.y: scene.frame.yawDegrees
        Node {
            eulerRotation.x: scene.frame.pitchDegrees
            PerspectiveCamera {
                id: camera
                z: scene.cameraDistance / scene.frame.zoom
                fieldOfView: 22
                clipNear: 20
                clipFar: 6000
            }
        }
    }

    // The ground is turned by the camera's resting yaw, so that at rest the camera faces the
    // city's front and the districts stand where their chips' anchors put them.
    Node {
        id: world
        eulerRotation.y: -35.5

        DirectionalLight {
            id: sun
            eulerRotation: Qt.vector3d(-52, -38, 0)
            color: scene.dark ? "#aebcff" : "#fff2dc"
            // The ambient light rides on the sun: a light of its own would add to every pixel's shading.
            ambientColor: scene.dark ? "#2a3046" : "#8a8884"
            brightness: scene.dark ? 0.6 : 1.1
            castsShadow: scene.shadows
            shadowMapQuality: Light.ShadowMapQualityLow
            shadowFactor: 45
            shadowMapFar: 4000
            shadowBias: 12
        }
        DirectionalLight {
            id: rim
            eulerRotation: Qt.vector3d(-18, 160, 0)
            color: scene.dark ? "#ff9a5a" : "#ffd7b0"
            brightness: scene.dark ? 0.7 : 0.45
        }

        ClassicCity {
            id: classic
            visible: !scene.freight && !scene.lineup
            controller: scene.controller
            frame: scene.frame
            dark: scene.dark
            hoveredDistrict: scene.hoveredDistrict
        }
        FreightTerminal {
            id: terminal
            visible: scene.freight && !scene.lineup
            controller: scene.controller
            frame: scene.frame
            dark: scene.dark
            hoveredDistrict: scene.hoveredDistrict
        }
        // Left of the middle, clear of the inspector drawer.
        AgentLineup {
            id: agentLineup
            x: -170
            visible: scene.lineup
            agents: scene.agents
            selectedAgent: scene.selectedAgent
            dark: scene.dark
            loopTime: scene.frame.loopTime
        }
    }
}
