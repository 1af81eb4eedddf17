import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Kestrow.Gui

// What is installed and what was left behind by applications no longer there.
ScrollView {
    id: screen
    property var view
    property bool shown: false
    property int pendingRow: -1

    contentWidth: availableWidth
    clip: true
    onShownChanged: if (shown) Qt.callLater(view.appear)

    component Tile: Rectangle {
        property string symbol
        property string imageSource
        width: 36
        height: 36
        radius: 9
        color: Theme.puttyWell
        Image {
            visible: parent.imageSource !== ""
            anchors.centerIn: parent
            source: parent.imageSource
            sourceSize: Qt.size(28, 28)
        }
        Icon {
            visible: parent.imageSource === ""
            anchors.centerIn: parent
            symbol: parent.symbol
            size: 20
        }
    }

    ColumnLayout {
        width: screen.availableWidth
        spacing: 14

        ScreenHeader {
            Layout.fillWidth: true
            title: "Uninstall"
            subtitle: "Installed applications, and what removed ones left behind."
            KButton {
                objectName: "refreshButton"
                text: "Refresh"
                symbol: "arrow.clockwise"
                enabled: !screen.view.isBusy
                onClicked: screen.view.loadApps()
            }
        }

        TextField {
            objectName: "searchField"
            Layout.fillWidth: true
            placeholderText: "Search apps or orphans"
            text: screen.view.search
            onTextEdited: screen.view.search = text
            color: Theme.ink
            placeholderTextColor: Theme.inkTertiary
            background: Rectangle {
                implicitHeight: 34
                radius: 8
                color: Theme.panel
                border.width: 1
                border.color: Theme.hairline
            }
        }

        BusyState {
            objectName: "loadingState"
            visible: screen.view.screenState === "loading"
            text: "Loading apps"
            accessibleText: "Loading apps"
        }
        EmptyPanel {
            objectName: "noMatchState"
            visible: screen.view.screenState === "noMatch"
            Layout.fillWidth: true
            headline: "Nothing matches this filter."
            detail: "Try a different app name or path."
        }
        EmptyPanel {
            objectName: "allCleanState"
            visible: screen.view.screenState === "allClean"
            Layout.fillWidth: true
            headline: "All clean."
            detail: "No orphans found and every installed app is accounted for."
        }

        RowLayout {
            objectName: "orphansSection"
            visible: screen.view.screenState === "lists" && screen.view.leftoverCount > 0
            Layout.fillWidth: true
            Text {
                text: "Orphans (" + screen.view.leftoverCount + ")"
                font.pixelSize: 15
                font.weight: Font.Bold
                color: Theme.ink
                Layout.fillWidth: true
            }
            KButton {
                objectName: "sweepAllOrphans"
                text: "Sweep all orphans"
                symbol: "trash"
                enabled: !screen.view.isBusy
                help: "Moves every orphan to the Trash. Restorable."
                onClicked: screen.view.sweepAllOrphans()
            }
        }
        Repeater {
            model: screen.view.screenState === "lists" ? screen.view.leftovers : null
            delegate: Rectangle {
                required property int index
                required property string name
                required property string path
                required property string sizeText
                required property string accessibleText
                Layout.fillWidth: true
                implicitHeight: 56
                radius: 10
                color: Theme.panel
                border.width: 1
                border.color: Theme.hairline
                RowLayout {
                    anchors.fill: parent
                    anchors.leftMargin: 12
                    anchors.rightMargin: 12
                    spacing: 12
                    Tile { symbol: "ghost" }
                    ColumnLayout {
                        Layout.fillWidth: true
                        spacing: 1
                        Text { text: name; font.pixelSize: 13; font.weight: Font.DemiBold; color: Theme.ink; Layout.fillWidth: true; elide: Text.ElideRight }
                        Text { text: path + "  ·  " + sizeText; font.pixelSize: 11; color: Theme.inkTertiary; Layout.fillWidth: true; elide: Text.ElideMiddle }
                    }
                    KButton {
                        objectName: "sweepOrphan" + index
                        symbol: "trash"
                        help: "Move this orphan to the Trash"
                        Accessible.name: accessibleText
                        enabled: !screen.view.isBusy
                        onClicked: screen.view.sweepOrphan(index)
                    }
                }
            }
        }

        Text {
            objectName: "installedSection"
            visible: screen.view.screenState === "lists" && screen.view.appCount > 0
            text: "Installed (" + screen.view.appCount + ")"
            font.pixelSize: 15
            font.weight: Font.Bold
            color: Theme.ink
        }
        Repeater {
            model: screen.view.screenState === "lists" ? screen.view.apps : null
            delegate: Rectangle {
                required property int index
                required property string name
                required property string detail
                required property string iconSource
                required property bool canRemove
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
                    anchors.leftMargin: 12
                    anchors.rightMargin: 12
                    spacing: 12
                    Tile { symbol: "app.dashed"; imageSource: iconSource }
                    ColumnLayout {
                        Layout.fillWidth: true
                        spacing: 1
                        Text { text: name; font.pixelSize: 13; font.weight: Font.DemiBold; color: Theme.ink; Layout.fillWidth: true; elide: Text.ElideRight }
                        Text { text: detail; font.pixelSize: 11; color: Theme.inkTertiary; Layout.fillWidth: true; elide: Text.ElideRight }
                    }
                    Pill {
                        objectName: "systemChip"
                        visible: !canRemove
                        text: "System"
                        tint: Theme.inkTertiary
                    }
                    KButton {
                        objectName: "remove" + index
                        visible: canRemove
                        text: "Remove"
                        Accessible.name: "Remove " + name
                        enabled: !screen.view.isBusy
                        onClicked: {
                            screen.pendingRow = index
                            removal.open()
                        }
                    }
                }
            }
        }
        Item { Layout.preferredHeight: 8 }
    }

    Dialog {
        id: removal
        objectName: "removalDialog"
        parent: Overlay.overlay
        anchors.centerIn: parent
        modal: true
        width: Math.min(460, screen.width - 40)
        title: screen.pendingRow >= 0 ? screen.view.removalTitle(screen.pendingRow) : ""
        onClosed: screen.pendingRow = -1
        background: Rectangle {
            radius: 12
            color: Theme.panel
            border.width: 1
            border.color: Theme.hairline
        }
        header: Text {
            text: removal.title
            padding: 18
            bottomPadding: 0
            wrapMode: Text.WordWrap
            font.pixelSize: 15
            font.weight: Font.Bold
            color: Theme.ink
        }
        contentItem: Text {
            text: screen.view.removalMessage
            wrapMode: Text.WordWrap
            font.pixelSize: 13
            color: Theme.inkSecondary
        }
        footer: Row {
            layoutDirection: Qt.RightToLeft
            spacing: 8
            padding: 16
            KButton {
                objectName: "confirmRemoval"
                text: "Move to Trash"
                prominent: true
                tint: Theme.dangerRed
                onClicked: {
                    screen.view.uninstall(screen.pendingRow)
                    removal.close()
                }
            }
            KButton {
                objectName: "cancelRemoval"
                text: "Cancel"
                onClicked: removal.close()
            }
        }
    }
}
