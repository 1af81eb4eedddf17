import QtQuick
import Kestrow.Gui

// A short word in a tinted capsule.
Rectangle {
    property alias text: label.text
    property color tint: Theme.safeTeal

    implicitWidth: label.implicitWidth + 16
    implicitHeight: label.implicitHeight + 6
    radius: height / 2
    color: Qt.rgba(tint.r, tint.g, tint.b, 0.16)
    Text {
        id: label
        anchors.centerIn: parent
        font.pixelSize: 11
        font.weight: Font.DemiBold
        color: parent.tint
    }
}
