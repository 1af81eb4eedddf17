import QtQuick
import QtQuick.Controls
import Kestrow.Gui

// The inspector drawer of one agent: its file card, the status that follows what runs, its
// biography and figures, and the button that plays its emote.
Rectangle {
    id: drawer
    property var agent: null
    signal emoteRequested(string id)
    signal closed()

    color: Theme.panel
    border.width: 1
    border.color: Theme.hairline
    radius: 12
    visible: agent !== null
    Accessible.role: Accessible.Pane
    Accessible.name: agent ? agent.name : ""

    Flickable {
        anchors.fill: parent
        anchors.margins: 12
        contentHeight: column.implicitHeight
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        ScrollBar.vertical: ScrollBar {}

        Column {
            id: column
            width: parent.width - 8
            spacing: 6

            Row {
                width: parent.width
                spacing: 8
                Rectangle {
                    width: designation.implicitWidth + 12
                    height: 18
                    radius: 9
                    color: drawer.agent ? Theme.color(drawer.agent.tintName) : "transparent"
                    Text {
                        id: designation
                        anchors.centerIn: parent
                        text: drawer.agent ? drawer.agent.designation : ""
                        font.pixelSize: 10
                        font.weight: Font.Bold
                        color: "white"
                    }
                }
                Text {
                    text: drawer.agent ? drawer.agent.name : ""
                    font.pixelSize: 14
                    font.weight: Font.DemiBold
                    color: Theme.ink
                }
            }
            Text {
                width: parent.width
                text: drawer.agent ? drawer.agent.role + " · " + drawer.agent.district : ""
                font.pixelSize: 11
                color: Theme.inkSecondary
                wrapMode: Text.Wrap
            }
            Text {
                objectName: "agentStatus"
                width: parent.width
                text: drawer.agent ? drawer.agent.status : ""
                font.pixelSize: 11
                font.family: "monospace"
                font.weight: Font.DemiBold
                color: drawer.agent ? Theme.color(drawer.agent.tintName) : Theme.ink
                wrapMode: Text.Wrap
            }
            Text {
                width: parent.width
                text: drawer.agent ? drawer.agent.loreBio : ""
                font.pixelSize: 11
                color: Theme.ink
                wrapMode: Text.Wrap
            }
            Text {
                width: parent.width
                text: drawer.agent ? drawer.agent.benefit : ""
                font.pixelSize: 11
                color: Theme.inkSecondary
                wrapMode: Text.Wrap
            }
            Grid {
                columns: 2
                columnSpacing: 12
                rowSpacing: 4
                Repeater {
                    model: drawer.agent ? drawer.agent.stats : []
                    delegate: Column {
                        required property var modelData
                        width: (column.width - 12) / 2
                        Text {
                            text: modelData.label
                            font.pixelSize: 9
                            color: Theme.inkTertiary
                        }
                        Text {
                            text: modelData.value
                            font.pixelSize: 12
                            font.weight: Font.DemiBold
                            color: Theme.ink
                        }
                    }
                }
            }
            Row {
                spacing: 8
                KButton {
                    objectName: "emoteButton"
                    text: drawer.agent ? drawer.agent.emoteLabel : ""
                    onClicked: drawer.emoteRequested(drawer.agent.id)
                }
                KButton {
                    text: "Close"
                    onClicked: drawer.closed()
                }
            }
        }
    }
}
