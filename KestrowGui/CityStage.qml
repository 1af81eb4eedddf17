import QtQuick
import QtQuick.Layouts
import Kestrow.Gui

// The stage above the screens: the disk's districts as flat chips until the city is drawn.
// A chip opens the screen of its district: the applications' district the Uninstaller, any
// other the Sweep screen.
Rectangle {
    id: stage
    signal districtSelected(int id)
    property var chips: [
        { id: 0, title: "System", colorName: "trackSystem" },
        { id: 1, title: "Caches", colorName: "safeTeal" },
        { id: 2, title: "Apps", colorName: "trackApps" },
        { id: 3, title: "Models", colorName: "askAmber" },
        { id: 4, title: "Other", colorName: "trackOther" }
    ]

    color: Theme.puttyWell
    radius: 14
    implicitHeight: 132

    RowLayout {
        anchors.fill: parent
        anchors.margins: 18
        spacing: 12
        Repeater {
            model: stage.chips
            delegate: Rectangle {
                required property var modelData
                objectName: "chip" + modelData.id
                Layout.fillWidth: true
                Layout.fillHeight: true
                radius: 10
                color: Theme.panel
                border.width: 1
                border.color: Theme.hairline
                Accessible.role: Accessible.Button
                Accessible.name: modelData.title
                Rectangle {
                    anchors.left: parent.left
                    anchors.right: parent.right
                    anchors.bottom: parent.bottom
                    anchors.margins: 10
                    height: 8
                    radius: 4
                    color: Theme.color(parent.modelData.colorName)
                }
                Text {
                    anchors.left: parent.left
                    anchors.top: parent.top
                    anchors.margins: 12
                    text: parent.modelData.title
                    font.pixelSize: 13
                    font.weight: Font.DemiBold
                    color: Theme.ink
                }
                TapHandler {
                    onTapped: stage.districtSelected(parent.modelData.id)
                }
            }
        }
    }
}
