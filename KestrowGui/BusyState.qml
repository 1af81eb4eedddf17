import QtQuick
import QtQuick.Controls
import Kestrow.Gui

// A word with an activity mark, while something runs.
Row {
    property alias text: word.text
    property string accessibleText

    Accessible.name: accessibleText
    spacing: 10
    BusyIndicator {
        running: parent.visible
        width: 24
        height: 24
        anchors.verticalCenter: parent.verticalCenter
    }
    Text {
        id: word
        font.pixelSize: 15
        color: Theme.inkSecondary
        anchors.verticalCenter: parent.verticalCenter
    }
}
