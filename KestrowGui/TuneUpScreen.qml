import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Kestrow.Gui

// Three quick tasks, and the launch items with a switch each.
ScrollView {
    id: screen
    property var view
    property bool shown: false

    contentWidth: availableWidth
    clip: true
    onShownChanged: if (shown) Qt.callLater(view.appear)

    ColumnLayout {
        width: screen.availableWidth
        spacing: 14

        ScreenHeader {
            Layout.fillWidth: true
            title: "Tune-Up"
            subtitle: "Login items, background agents, and quick speed fixes."
            KButton {
                objectName: "refreshButton"
                text: "Refresh"
                symbol: "arrow.clockwise"
                enabled: !screen.view.isBusy
                onClicked: screen.view.refresh()
            }
        }

        RowLayout {
            Layout.fillWidth: true
            spacing: 12
            Repeater {
                model: screen.view.cards
                delegate: Panel {
                    required property var modelData
                    Layout.fillWidth: true
                    Layout.preferredWidth: 1
                    Layout.fillHeight: true
                    Accessible.name: modelData.accessibleText
                    RowLayout {
                        Rectangle {
                            width: 32
                            height: 32
                            radius: 8
                            color: Theme.puttyWell
                            Icon { anchors.centerIn: parent; symbol: modelData.icon; size: 18 }
                        }
                        Text { text: modelData.section; font.pixelSize: 11; font.weight: Font.Bold; color: Theme.inkTertiary }
                    }
                    Text { text: modelData.title; font.pixelSize: 14; font.weight: Font.DemiBold; color: Theme.ink; Layout.fillWidth: true; wrapMode: Text.WordWrap }
                    Text { text: modelData.detail; font.pixelSize: 12; color: Theme.inkSecondary; Layout.fillWidth: true; wrapMode: Text.WordWrap }
                    Item { Layout.fillHeight: true }
                    KButton {
                        objectName: "run_" + modelData.id
                        text: modelData.running ? "Running…" : "Run"
                        enabled: screen.view.canRun
                        onClicked: screen.view.run(modelData.id)
                    }
                }
            }
        }

        Text {
            objectName: "taskStatus"
            visible: screen.view.statusRow !== ""
            text: screen.view.statusRow
            font.pixelSize: 12
            color: screen.view.taskDidFail ? Theme.dangerRed : Theme.inkSecondary
            Layout.fillWidth: true
            wrapMode: Text.WordWrap
        }

        BusyState {
            objectName: "startupLoading"
            visible: screen.view.startupState === "loading"
            text: "Loading startup items…"
            accessibleText: "Loading startup items"
        }
        EmptyPanel {
            objectName: "startupEmpty"
            visible: screen.view.startupState === "empty"
            Layout.fillWidth: true
            headline: "Nothing running at startup."
            detail: screen.view.emptyDetail
        }
        Text {
            objectName: "startupTitle"
            visible: screen.view.startupState === "rows"
            text: "Startup items (" + screen.view.itemCount + ")"
            font.pixelSize: 15
            font.weight: Font.Bold
            color: Theme.ink
        }
        Repeater {
            model: screen.view.startupState === "rows" ? screen.view.items : null
            delegate: Rectangle {
                required property int index
                required property string name
                required property string path
                required property string typeText
                required property string impactText
                required property bool switchOn
                required property string accessibleText
                Layout.fillWidth: true
                implicitHeight: 56
                radius: 10
                color: Theme.panel
                border.width: 1
                border.color: Theme.hairline
                Accessible.name: accessibleText
                RowLayout {
                    anchors.fill: parent
                    anchors.leftMargin: 14
                    anchors.rightMargin: 10
                    spacing: 10
                    ColumnLayout {
                        Layout.fillWidth: true
                        spacing: 1
                        Text { text: name; font.pixelSize: 13; font.weight: Font.DemiBold; color: Theme.ink; Layout.fillWidth: true; elide: Text.ElideRight }
                        Text { text: path; font.pixelSize: 11; color: Theme.inkTertiary; Layout.fillWidth: true; elide: Text.ElideMiddle }
                    }
                    Pill { text: typeText; tint: Theme.inkSecondary }
                    Pill {
                        text: impactText
                        tint: impactText === "HIGH" ? Theme.dangerRed : impactText === "MEDIUM" ? Theme.askAmber : Theme.safeTeal
                    }
                    KSwitch {
                        objectName: "switch" + index
                        checked: switchOn
                        Accessible.name: name
                        onToggled: screen.view.toggle(index, checked)
                    }
                }
            }
        }
        Item { Layout.preferredHeight: 8 }
    }
}
