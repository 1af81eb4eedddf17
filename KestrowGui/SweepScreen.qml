import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Kestrow.Gui

// What the last scan found, category by category, under a risk filter.
ScrollView {
    id: screen
    property var view

    contentWidth: availableWidth
    clip: true

    ColumnLayout {
        width: screen.availableWidth
        spacing: 14

        BusyState {
            objectName: "scanningState"
            visible: screen.view.screenState === "scanning"
            text: "Scanning"
            accessibleText: "Scanning in progress"
            Layout.topMargin: 24
        }

        EmptyPanel {
            objectName: "noScanState"
            visible: screen.view.screenState === "noScan"
            Layout.fillWidth: true
            headline: "Nothing to sweep yet."
            detail: "Run a scan from Pulse to see what's freeable."
            buttonTitle: "Scan now"
            buttonEnabled: !screen.view.isBusy
            onPressed: screen.view.runSmartScan()
        }

        ColumnLayout {
            objectName: "rowsState"
            visible: screen.view.screenState === "rows"
            Layout.fillWidth: true
            spacing: 14

            ScreenHeader {
                Layout.fillWidth: true
                title: "Sweep"
                subtitle: "Package caches, AI models, build artifacts, and system logs."
                KButton {
                    objectName: "scanAgainButton"
                    text: "Scan again"
                    symbol: "magnifyingglass"
                    enabled: !screen.view.isBusy
                    onClicked: screen.view.runSmartScan()
                }
            }

            RowLayout {
                Layout.fillWidth: true
                Row {
                    objectName: "filter"
                    spacing: 0
                    Repeater {
                        model: screen.view.filters
                        delegate: Button {
                            id: segment
                            required property string modelData
                            objectName: "filter_" + modelData
                            readonly property bool selected: screen.view.filter === modelData
                            text: modelData
                            Accessible.name: modelData
                            onClicked: screen.view.filter = modelData
                            padding: 6
                            leftPadding: 14
                            rightPadding: 14
                            contentItem: Text {
                                text: segment.text
                                font.pixelSize: 12
                                font.weight: Font.DemiBold
                                color: segment.selected ? Theme.panel : Theme.ink
                                horizontalAlignment: Text.AlignHCenter
                            }
                            background: Rectangle {
                                radius: 7
                                color: segment.selected ? Theme.ink : (segment.hovered ? Theme.puttyWell : "transparent")
                            }
                        }
                    }
                }
                Item { Layout.fillWidth: true }
                Row {
                    objectName: "totalLine"
                    spacing: 8
                    Accessible.name: screen.view.totalAccessibleText
                    Text { text: "Ready to sweep"; font.pixelSize: 13; color: Theme.inkSecondary }
                    Text {
                        objectName: "totalText"
                        text: screen.view.totalText
                        font.pixelSize: 13
                        font.weight: Font.Bold
                        color: Theme.ink
                    }
                }
            }

            EmptyPanel {
                objectName: "handsOff"
                visible: screen.view.rowsState === "handsOff"
                Layout.fillWidth: true
                headline: "Hands off: nothing here."
                detail: "Everything the scan found is either in use or already clean."
            }
            EmptyPanel {
                objectName: "nothingMatches"
                visible: screen.view.rowsState === "nothingMatches"
                Layout.fillWidth: true
                headline: "Nothing matches this filter."
                detail: "Try the All segment to see every category the scan found."
            }

            Repeater {
                objectName: "categoryRows"
                model: screen.view.rowsState === "rows" ? screen.view.rows : null
                delegate: Rectangle {
                    id: categoryRow
                    required property string name
                    required property string symbol
                    required property string countText
                    required property string pillText
                    required property string pillColor
                    required property string sizeText
                    required property string accessibleText
                    Layout.fillWidth: true
                    implicitHeight: 58
                    radius: 10
                    color: Theme.panel
                    border.width: 1
                    border.color: Theme.hairline
                    Accessible.name: accessibleText
                    RowLayout {
                        anchors.fill: parent
                        anchors.leftMargin: 14
                        anchors.rightMargin: 14
                        spacing: 12
                        Rectangle {
                            width: 32
                            height: 32
                            radius: 8
                            color: Theme.puttyWell
                            Icon { anchors.centerIn: parent; symbol: categoryRow.symbol; size: 18 }
                        }
                        ColumnLayout {
                            Layout.fillWidth: true
                            spacing: 1
                            Text { text: name; font.pixelSize: 14; font.weight: Font.DemiBold; color: Theme.ink; Layout.fillWidth: true; elide: Text.ElideRight }
                            Text { text: countText; font.pixelSize: 12; color: Theme.inkTertiary }
                        }
                        Pill { text: pillText; tint: Theme.color(pillColor) }
                        Text {
                            text: sizeText
                            font.pixelSize: 14
                            font.weight: Font.DemiBold
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
}
