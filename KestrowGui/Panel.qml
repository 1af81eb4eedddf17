import QtQuick
import QtQuick.Layouts
import Kestrow.Gui

// A rounded card with a title and an optional label on the right.
Rectangle {
    id: panel
    property string title
    property string rightLabel
    property color rightColor: Theme.inkTertiary
    default property alias content: body.data
    property int padding: 14

    color: Theme.panel
    radius: 12
    border.width: 1
    border.color: Theme.hairline
    implicitHeight: column.implicitHeight + 2 * padding
    implicitWidth: column.implicitWidth + 2 * padding

    ColumnLayout {
        id: column
        anchors.fill: parent
        anchors.margins: panel.padding
        spacing: 8
        RowLayout {
            visible: panel.title !== ""
            Layout.fillWidth: true
            Text {
                text: panel.title
                font.pixelSize: 12
                font.weight: Font.Bold
                font.letterSpacing: 0.4
                color: Theme.inkSecondary
                Layout.fillWidth: true
                elide: Text.ElideRight
            }
            Text {
                visible: panel.rightLabel !== ""
                text: panel.rightLabel
                font.pixelSize: 10
                font.weight: Font.Bold
                font.letterSpacing: 0.6
                color: panel.rightColor
            }
        }
        ColumnLayout {
            id: body
            Layout.fillWidth: true
            spacing: 6
        }
    }
}
