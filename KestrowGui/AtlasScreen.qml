import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Kestrow.Gui

// A folder map of the home, walked level by level: each row's bar is the child's share.
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
            title: "Atlas"
            subtitle: "A map of your disk: the tall towers are the heavy directories."
            KButton {
                objectName: "resurveyButton"
                text: "Resurvey"
                symbol: "arrow.clockwise"
                enabled: !screen.view.isBusy
                onClicked: screen.view.loadSpaceLens()
            }
        }

        BusyState {
            objectName: "surveyingState"
            visible: screen.view.screenState === "surveying"
            text: "Surveying"
            accessibleText: "Surveying disk in progress"
        }

        EmptyPanel {
            objectName: "noMapState"
            visible: screen.view.screenState === "noMap"
            Layout.fillWidth: true
            headline: "No map yet."
            detail: "Run a survey to map your disk."
            buttonTitle: "Survey now"
            buttonEnabled: !screen.view.isBusy
            onPressed: screen.view.loadSpaceLens()
        }

        RowLayout {
            objectName: "breadcrumb"
            visible: screen.view.screenState === "map"
            Layout.fillWidth: true
            spacing: 4
            KButton {
                objectName: "upButton"
                visible: screen.view.canGoUp
                symbol: "chevron.up"
                help: "Up one level"
                Accessible.name: "Up one level"
                onClicked: screen.view.drillOut()
            }
            Repeater {
                model: screen.view.crumbs
                delegate: KButton {
                    required property var modelData
                    required property int index
                    objectName: "crumb" + index
                    text: modelData.title
                    symbol: "folder"
                    flat: true
                    enabled: !modelData.isLast
                    opacity: 1
                    help: modelData.isLast ? "" : "Open" + modelData.title
                    Accessible.name: modelData.isLast ? "Current " + modelData.title : modelData.title
                    onClicked: screen.view.drillTo(index)
                }
            }
            Item { Layout.fillWidth: true }
        }

        EmptyPanel {
            objectName: "emptyFolder"
            visible: screen.view.screenState === "map" && rows.count === 0
            Layout.fillWidth: true
            headline: "This folder is empty."
        }

        Repeater {
            id: rows
            model: screen.view.screenState === "map" ? screen.view.rows : null
            delegate: ItemDelegate {
                id: row
                required property int index
                required property string name
                required property string symbol
                required property bool isDirectory
                required property string sizeText
                required property double fraction
                required property string accessibleText
                objectName: "atlasRow" + index
                Layout.fillWidth: true
                implicitHeight: 48
                enabled: isDirectory && !screen.view.isBusy
                hoverEnabled: true
                Accessible.name: accessibleText
                ToolTip.visible: isDirectory && hovered
                ToolTip.text: "Opens this folder"
                ToolTip.delay: 500
                onClicked: screen.view.drillIn(index)
                background: Rectangle {
                    radius: 10
                    color: row.hovered && row.isDirectory ? Theme.puttyWell : Theme.panel
                    border.width: 1
                    border.color: Theme.hairline
                }
                contentItem: RowLayout {
                    spacing: 12
                    Icon { symbol: row.symbol; size: 18; color: row.isDirectory ? Qt.rgba(0.5412, 0.5804, 0.6275, 1) : Theme.inkSecondary }
                    Text {
                        text: row.name
                        font.pixelSize: 13
                        color: Theme.ink
                        elide: Text.ElideMiddle
                        Layout.preferredWidth: 220
                    }
                    Rectangle {
                        objectName: "proportionTrack"
                        Layout.fillWidth: true
                        height: 8
                        radius: 4
                        color: Theme.puttyWell
                        Rectangle {
                            objectName: "proportionFill"
                            width: parent.width * row.fraction
                            height: parent.height
                            radius: 4
                            color: row.isDirectory ? Qt.rgba(Theme.ink.r, Theme.ink.g, Theme.ink.b, 0.85) : Theme.inkSecondary
                        }
                    }
                    Text {
                        text: row.sizeText
                        font.pixelSize: 13
                        color: Theme.ink
                        horizontalAlignment: Text.AlignRight
                        Layout.preferredWidth: 84
                    }
                }
            }
        }
        Item { Layout.preferredHeight: 8 }
    }
}
