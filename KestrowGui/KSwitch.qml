import QtQuick
import QtQuick.Controls
import Kestrow.Gui

// The application's switch: a teal track when on, a quiet one when off, in either theme.
Switch {
    id: control
    opacity: enabled ? 1 : 0.45
    indicator: Rectangle {
        implicitWidth: 40
        implicitHeight: 22
        x: control.leftPadding
        y: (control.height - height) / 2
        radius: height / 2
        color: control.checked ? Theme.safeTeal : Theme.hairline
        border.width: control.visualFocus ? 2 : 0
        border.color: Theme.accentOrange
        Rectangle {
            x: control.checked ? parent.width - width - 2 : 2
            y: 2
            width: parent.height - 4
            height: width
            radius: width / 2
            color: "white"
            Behavior on x { NumberAnimation { duration: 120 } }
        }
    }
}
