import QtQuick
import QtQuick.Controls
import Kestrow.Gui

// The application's button: an optional symbol and a title, filled when prominent.
Button {
    id: control
    property string symbol
    property bool prominent: false
    property color tint: Theme.accentOrange
    property string help

    Accessible.name: text
    hoverEnabled: true
    ToolTip.visible: help !== "" && hovered
    ToolTip.text: help
    ToolTip.delay: 500
    padding: 8
    leftPadding: 14
    rightPadding: 14
    opacity: enabled ? 1 : 0.45

    contentItem: Row {
        spacing: 6
        Icon {
            visible: control.symbol !== ""
            symbol: control.symbol
            anchors.verticalCenter: parent.verticalCenter
            color: control.prominent ? "white" : Theme.ink
        }
        Text {
            text: control.text
            font.pixelSize: 13
            font.weight: Font.DemiBold
            color: control.prominent ? "white" : Theme.ink
            anchors.verticalCenter: parent.verticalCenter
        }
    }
    background: Rectangle {
        implicitHeight: 32
        radius: 8
        color: control.prominent ? (control.down ? Qt.darker(control.tint, 1.15) : control.tint)
                                 : (control.down || control.hovered ? Theme.puttyWell : Theme.panel)
        border.width: control.prominent ? 0 : 1
        border.color: Theme.hairline
    }
}
