import QtQuick
import Kestrow.Gui

// The stage above the screens. Its districts are chips at their anchors in the stage's unit
// square; a chip opens the screen of its district: the applications' district the Uninstaller,
// any other the Sweep screen.
Rectangle {
    id: stage
    required property var view

    color: Theme.puttyWell
    radius: 14
    implicitHeight: 150
    clip: true
    Accessible.role: Accessible.Graphic
    Accessible.name: stage.view.accessibilitySummary

    // A horizon with the districts' ground, so the chips stand somewhere.
    Rectangle {
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.bottom: parent.bottom
        height: parent.height * 0.3
        color: Theme.hairline
        opacity: 0.5
    }

    Repeater {
        model: stage.view.chips
        delegate: Rectangle {
            id: chip
            required property var modelData
            objectName: "chip" + modelData.id
            x: Math.min(stage.width - width - 8, Math.max(8, modelData.x * stage.width))
            y: Math.min(stage.height - height - 8, Math.max(8, modelData.y * stage.height))
            width: Math.max(120, column.implicitWidth + 34)
            height: column.implicitHeight + 12
            radius: 8
            color: hover.hovered ? Theme.window : Theme.panel
            border.width: 1
            border.color: hover.hovered ? Theme.color(modelData.tintName) : Theme.hairline
            Accessible.role: Accessible.Button
            Accessible.name: modelData.title + ", " + modelData.detail
            Accessible.onPressAction: stage.view.selectDistrict(modelData.id)

            Rectangle {
                id: badge
                anchors.left: parent.left
                anchors.verticalCenter: parent.verticalCenter
                anchors.leftMargin: 8
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
                anchors.leftMargin: 8
                anchors.verticalCenter: parent.verticalCenter
                Text {
                    text: chip.modelData.title
                    font.pixelSize: 12
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
