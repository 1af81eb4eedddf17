import QtQuick
import QtQuick3D
import Kestrow.Gui

// The stage above the screens: the 3D city of the chosen style, its districts' chips held over
// their anchors, and its handles: a click on a district or a chip opens the district's screen
// (the applications' district the Uninstaller, any other the Sweep screen), a drag turns the
// camera, a right-drag pans it, a double click sets it back.
Rectangle {
    id: stage
    required property var view
    property bool shadows: true
    readonly property alias viewport: viewport
    readonly property alias scene: scene
    readonly property alias frame: frame
    property int hoveredDistrict: 0

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
            hoveredDistrict: stage.hoveredDistrict
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
            const hit = viewport.pick(x, y).objectHit
            return hit && hit.district !== undefined ? hit.district : 0
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
            visible: projected.z > 0
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
}
