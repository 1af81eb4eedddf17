import QtQuick
import QtQuick3D
import Kestrow.Gui

// The stage above the screens: the 3D city of the chosen style, its districts' chips held over
// their anchors, and its handles: a click on a district or a chip opens the district's screen
// (the applications' district the Uninstaller, any other the Sweep screen), a drag turns the
// camera, a right-drag pans it, a double click sets it back. Its Agents button turns it into the
// lineup of the style's robots, where a click on a robot opens its inspector drawer.
Rectangle {
    id: stage
    objectName: "cityStage"
    required property var view
    // The sun casts shadows unless the window draws on the processor, where they halve the frames.
    property bool shadows: !view.softwareRendering
    readonly property alias viewport: viewport
    readonly property alias scene: scene
    readonly property alias frame: frame
    property int hoveredDistrict: 0
    property bool lineupOpen: false
    property string selectedAgent: ""
    readonly property var selectedProfile: {
        for (const agent of stage.view.agents)
            if (agent.id === stage.selectedAgent)
                return agent
        return null
    }

    color: Theme.puttyWell
    radius: 14
    implicitHeight: 240
    clip: true
    Accessible.role: Accessible.Graphic
    Accessible.name: stage.view.accessibilitySummary

    CityFrame {
        id: frame
        controller: stage.view.controller
    }

    View3D {
        id: viewport
        anchors.fill: parent
        camera: scene.camera
        environment: scene.environment

        CityScene {
            id: scene
            controller: stage.view.controller
            frame: frame
            style: stage.view.style
            dark: Theme.dark
            shadows: stage.shadows
            // A wider stage brings the camera closer, so that the city fills its width.
            cameraDistance: 1400 * Math.min(1, 3.6 * viewport.height / Math.max(1, viewport.width))
            hoveredDistrict: stage.hoveredDistrict
            lineup: stage.lineupOpen
            agents: stage.view.agents
            selectedAgent: stage.selectedAgent
        }
    }

    MouseArea {
        id: pointer
        anchors.fill: parent
        acceptedButtons: Qt.LeftButton | Qt.RightButton
        hoverEnabled: true
        cursorShape: stage.hoveredDistrict !== 0 ? Qt.PointingHandCursor : Qt.ArrowCursor

        property point last
        property bool dragged: false
        readonly property real dragThreshold: 4

        function districtAt(x, y) {
            if (stage.lineupOpen)
                return 0
            const hit = viewport.pick(x, y).objectHit
            return hit && hit.district !== undefined ? hit.district : 0
        }
        function agentAt(x, y) {
            const hit = viewport.pick(x, y).objectHit
            return hit && hit.agent !== undefined ? hit.agent : ""
        }

        onPressed: mouse => {
            last = Qt.point(mouse.x, mouse.y)
            dragged = false
        }
        onPositionChanged: mouse => {
            if (!pressed) {
                stage.hoveredDistrict = districtAt(mouse.x, mouse.y)
                return
            }
            const dx = mouse.x - last.x
            const dy = mouse.y - last.y
            if (!dragged && Math.abs(dx) + Math.abs(dy) < dragThreshold)
                return
            dragged = true
            last = Qt.point(mouse.x, mouse.y)
            if (pressedButtons & Qt.RightButton)
                frame.pan(-dx * 1.6, dy * 1.6)
            else
                frame.rotate(-dx * 0.008, -dy * 0.006)
        }
        onExited: stage.hoveredDistrict = 0
        onClicked: mouse => {
            if (dragged || mouse.button !== Qt.LeftButton)
                return
            if (stage.lineupOpen) {
                const agent = agentAt(mouse.x, mouse.y)
                if (agent !== "")
                    stage.selectedAgent = agent
                return
            }
            const district = districtAt(mouse.x, mouse.y)
            if (district !== 0)
                stage.view.selectDistrict(district)
        }
        onDoubleClicked: frame.resetCamera()
    }

    Repeater {
        model: stage.view.chips
        delegate: Rectangle {
            id: chip
            required property var modelData
            readonly property var anchorNode: scene.anchorFor(modelData.id)
            // Where the district's anchor lands on the stage, again whenever the camera moves.
            readonly property vector3d projected: {
                frame.yawDegrees; frame.pitchDegrees; frame.zoom; frame.panX; frame.panZ
                viewport.width; viewport.height
                return anchorNode ? viewport.mapFrom3DScene(anchorNode.scenePosition) : Qt.vector3d(0, 0, -1)
            }
            readonly property bool lit: hover.hovered || stage.hoveredDistrict === modelData.id

            objectName: "chip" + modelData.id
            visible: projected.z > 0 && !stage.lineupOpen
            x: Math.min(stage.width - width - 6, Math.max(6, projected.x - width / 2))
            y: Math.min(stage.height - height - 6, Math.max(6, projected.y - height))
            width: Math.max(108, column.implicitWidth + 34)
            height: column.implicitHeight + 10
            radius: 8
            color: lit ? Theme.window : Theme.panel
            opacity: 0.94
            border.width: 1
            border.color: lit ? Theme.color(modelData.tintName) : Theme.hairline
            Accessible.role: Accessible.Button
            Accessible.name: modelData.title + ", " + modelData.detail
            Accessible.onPressAction: stage.view.selectDistrict(modelData.id)

            Rectangle {
                id: badge
                anchors.left: parent.left
                anchors.verticalCenter: parent.verticalCenter
                anchors.leftMargin: 7
                width: 18
                height: 18
                radius: 9
                color: Theme.color(chip.modelData.tintName)
                Text {
                    anchors.centerIn: parent
                    text: chip.modelData.badge
                    font.pixelSize: 9
                    font.weight: Font.Bold
                    color: "white"
                }
            }
            Column {
                id: column
                anchors.left: badge.right
                anchors.leftMargin: 7
                anchors.verticalCenter: parent.verticalCenter
                Text {
                    text: chip.modelData.title
                    font.pixelSize: 11
                    font.weight: Font.DemiBold
                    color: Theme.ink
                }
                Text {
                    text: chip.modelData.detail
                    font.pixelSize: 10
                    color: Theme.inkSecondary
                }
            }
            HoverHandler {
                id: hover
                cursorShape: Qt.PointingHandCursor
            }
            TapHandler {
                onTapped: stage.view.selectDistrict(chip.modelData.id)
            }
        }
    }

    // The robots' name tags in the lineup.
    Repeater {
        model: stage.lineupOpen ? stage.view.agents : []
        delegate: Rectangle {
            id: tag
            required property var modelData
            required property int index
            readonly property vector3d projected: {
                frame.yawDegrees; frame.pitchDegrees; frame.zoom; frame.panX; frame.panZ
                viewport.width; viewport.height
                const node = scene.agentLineup.tagFor(index)
                return node ? viewport.mapFrom3DScene(node.scenePosition) : Qt.vector3d(0, 0, -1)
            }
            objectName: "agent_" + modelData.id
            visible: projected.z > 0
            x: projected.x - width / 2
            y: Math.max(4, projected.y - height)
            width: name.implicitWidth + 16
            height: name.implicitHeight + 8
            radius: 6
            color: stage.selectedAgent === modelData.id ? Theme.color(modelData.tintName) : Theme.panel
            border.width: 1
            border.color: Theme.color(modelData.tintName)
            Accessible.role: Accessible.Button
            Accessible.name: modelData.name
            Accessible.onPressAction: stage.selectedAgent = modelData.id
            Text {
                id: name
                anchors.centerIn: parent
                text: tag.modelData.designation
                font.pixelSize: 10
                font.weight: Font.DemiBold
                color: stage.selectedAgent === tag.modelData.id ? "white" : Theme.ink
            }
            TapHandler {
                onTapped: stage.selectedAgent = tag.modelData.id
            }
        }
    }

    AgentInspector {
        objectName: "agentInspector"
        anchors.right: parent.right
        anchors.top: parent.top
        anchors.bottom: parent.bottom
        anchors.margins: 8
        width: Math.min(340, stage.width * 0.45)
        agent: stage.lineupOpen ? stage.selectedProfile : null
        onEmoteRequested: id => scene.agentLineup.emote(id)
        onClosed: stage.selectedAgent = ""
    }

    Rectangle {
        objectName: "lineupButton"
        anchors.left: parent.left
        anchors.bottom: parent.bottom
        anchors.margins: 8
        width: lineupLabel.implicitWidth + 20
        height: 24
        radius: 12
        color: lineupHover.hovered ? Theme.window : Theme.panel
        border.width: 1
        border.color: Theme.hairline
        Accessible.role: Accessible.Button
        Accessible.name: lineupLabel.text
        Accessible.onPressAction: stage.toggleLineup()
        Text {
            id: lineupLabel
            anchors.centerIn: parent
            text: stage.lineupOpen ? "Back to the city" : "Agents"
            font.pixelSize: 11
            font.weight: Font.DemiBold
            color: Theme.ink
        }
        HoverHandler {
            id: lineupHover
            cursorShape: Qt.PointingHandCursor
        }
        TapHandler {
            onTapped: stage.toggleLineup()
        }
    }

    function toggleLineup() {
        stage.lineupOpen = !stage.lineupOpen
        stage.selectedAgent = ""
        stage.hoveredDistrict = 0
        frame.resetCamera()
    }
}
