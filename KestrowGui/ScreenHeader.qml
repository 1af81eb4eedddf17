import QtQuick
import QtQuick.Layouts
import Kestrow.Gui

// The title and subtitle of a screen, with its buttons on the right.
RowLayout {
    property alias title: titleText.text
    property alias subtitle: subtitleText.text
    default property alias actions: actionRow.data

    spacing: 12
    ColumnLayout {
        Layout.fillWidth: true
        spacing: 2
        Text {
            id: titleText
            font.pixelSize: 26
            font.weight: Font.Bold
            color: Theme.ink
        }
        Text {
            id: subtitleText
            font.pixelSize: 13
            color: Theme.inkSecondary
            Layout.fillWidth: true
            wrapMode: Text.WordWrap
        }
    }
    Row {
        id: actionRow
        spacing: 8
        Layout.alignment: Qt.AlignTop
    }
}
