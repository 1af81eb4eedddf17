import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Kestrow.Gui

// The left column: the tabs, the capacity well with the main button, and the standing panels.
Rectangle {
    id: sidebar
    property var view

    color: Theme.sidebar

    component PanelRow: RowLayout {
        property alias label: left.text
        property alias value: right.text
        property color valueColor: Theme.inkSecondary
        Layout.fillWidth: true
        Text {
            id: left
            font.pixelSize: 12
            color: Theme.ink
            Layout.fillWidth: true
            elide: Text.ElideRight
        }
        Text {
            id: right
            font.pixelSize: 10
            font.weight: Font.Bold
            color: parent.valueColor
        }
    }

    ScrollView {
        anchors.fill: parent
        contentWidth: availableWidth
        clip: true

        ColumnLayout {
            width: parent.width
            spacing: 12

            Text {
                text: "Kestrow"
                font.pixelSize: 20
                font.weight: Font.Bold
                color: Theme.ink
                Layout.topMargin: 18
                Layout.leftMargin: 16
            }

            Column {
                Layout.fillWidth: true
                Layout.leftMargin: 8
                Layout.rightMargin: 8
                spacing: 2
                Repeater {
                    model: sidebar.view.tabs
                    delegate: ItemDelegate {
                        id: navRow
                        required property var modelData
                        objectName: "nav_" + modelData.id
                        readonly property bool isActive: sidebar.view.selectedTab === modelData.id
                        width: parent.width
                        height: 34
                        Accessible.name: modelData.title
                        onClicked: sidebar.view.selectedTab = modelData.id
                        background: Rectangle {
                            radius: 8
                            color: navRow.isActive ? Theme.panel : (navRow.hovered ? Theme.puttyWell : "transparent")
                            border.width: navRow.isActive ? 1 : 0
                            border.color: Theme.hairline
                        }
                        contentItem: RowLayout {
                            spacing: 10
                            Icon {
                                symbol: navRow.modelData.icon
                                color: navRow.isActive ? Theme.accentOrange : Theme.inkSecondary
                            }
                            Text {
                                text: navRow.modelData.title
                                font.pixelSize: 13
                                font.weight: navRow.isActive ? Font.DemiBold : Font.Normal
                                color: Theme.ink
                                Layout.fillWidth: true
                            }
                            Rectangle {
                                objectName: "badgeDot"
                                visible: navRow.modelData.hasBadge && navRow.modelData.badgeText === ""
                                width: 8
                                height: 8
                                radius: 4
                                color: Theme.color(navRow.modelData.badgeColor)
                            }
                            Text {
                                objectName: "badge"
                                visible: navRow.modelData.badgeText !== ""
                                text: navRow.modelData.badgeText
                                font.pixelSize: 10
                                font.weight: Font.Bold
                                color: Theme.color(navRow.modelData.badgeColor)
                            }
                        }
                    }
                }
            }

            Panel {
                objectName: "capacityWell"
                Layout.fillWidth: true
                Layout.leftMargin: 12
                Layout.rightMargin: 12
                RowLayout {
                    Layout.fillWidth: true
                    Accessible.name: sidebar.view.freeSpaceAccessibleText
                    Text {
                        text: "Free space"
                        font.pixelSize: 12
                        color: Theme.inkSecondary
                        Layout.fillWidth: true
                    }
                    Text {
                        text: sidebar.view.freeSpaceText
                        font.pixelSize: 12
                        font.weight: Font.DemiBold
                        color: Theme.ink
                    }
                }
                CapacityTrack {
                    view: sidebar.view
                    Layout.fillWidth: true
                    implicitHeight: 10
                }
                KButton {
                    objectName: "mainButton"
                    Layout.fillWidth: true
                    prominent: true
                    text: sidebar.view.mainButtonTitle
                    symbol: sidebar.view.mainButtonIcon
                    enabled: !sidebar.view.isBusy
                    onClicked: sidebar.view.pressMainButton()
                }
                Text {
                    visible: text !== ""
                    text: sidebar.view.lastSweepLine
                    font.pixelSize: 11
                    color: Theme.inkSecondary
                    Layout.fillWidth: true
                    wrapMode: Text.WordWrap
                }
            }

            Panel {
                title: "Live Telemetry"
                rightLabel: sidebar.view.thermalText
                rightColor: Theme.color(sidebar.view.thermalColor)
                Layout.fillWidth: true
                Layout.leftMargin: 12
                Layout.rightMargin: 12
                RowLayout {
                    Text { text: "CPU"; font.pixelSize: 11; color: Theme.inkSecondary; Layout.preferredWidth: 56 }
                    Meter { cells: 8; cellWidth: 8; lit: sidebar.view.cpuMeter.miniLit }
                    Item { Layout.fillWidth: true }
                    Text { text: sidebar.view.cpuText; font.pixelSize: 11; color: Theme.ink }
                }
                RowLayout {
                    Text { text: "MEMORY"; font.pixelSize: 11; color: Theme.inkSecondary; Layout.preferredWidth: 56 }
                    Meter { cells: 8; cellWidth: 8; lit: sidebar.view.memoryMeter.miniLit }
                    Item { Layout.fillWidth: true }
                    Text {
                        visible: text !== ""
                        text: sidebar.view.memoryBadgeText
                        font.pixelSize: 10
                        font.weight: Font.Bold
                        color: Theme.color(sidebar.view.memoryBadgeColor)
                    }
                }
                PanelRow {
                    label: "Memory"
                    value: sidebar.view.memoryText
                }
                RowLayout {
                    visible: sidebar.view.batteryMeter.present
                    Icon {
                        visible: sidebar.view.batteryMeter.charging
                        symbol: "bolt.fill"
                        size: 12
                    }
                    Text { text: "BATTERY"; font.pixelSize: 11; color: Theme.inkSecondary; Layout.fillWidth: true }
                    Text { text: sidebar.view.batteryMeter.text; font.pixelSize: 11; color: Theme.ink }
                }
            }

            Panel {
                title: sidebar.view.footprintTitle
                Layout.fillWidth: true
                Layout.leftMargin: 12
                Layout.rightMargin: 12
                Text {
                    visible: sidebar.view.footprintPending
                    text: sidebar.view.footprintPendingTitle
                    font.pixelSize: 12
                    font.weight: Font.DemiBold
                    color: Theme.ink
                }
                Text {
                    visible: sidebar.view.footprintPending
                    text: sidebar.view.footprintPendingDetail
                    font.pixelSize: 11
                    color: Theme.inkSecondary
                    Layout.fillWidth: true
                    wrapMode: Text.WordWrap
                }
                Repeater {
                    model: sidebar.view.footprintRows
                    delegate: RowLayout {
                        required property var modelData
                        Layout.fillWidth: true
                        spacing: 6
                        Icon {
                            symbol: modelData.symbol
                            size: 12
                            color: Theme.color(modelData.colorName)
                        }
                        Text {
                            text: modelData.label
                            font.pixelSize: 12
                            color: Theme.ink
                            elide: Text.ElideRight
                            Layout.fillWidth: true
                        }
                        Text {
                            text: modelData.value
                            font.pixelSize: 12
                            font.family: "monospace"
                            color: Theme.inkSecondary
                        }
                    }
                }
            }

            Panel {
                title: "Safety & Integrity"
                Layout.fillWidth: true
                Layout.leftMargin: 12
                Layout.rightMargin: 12
                RowLayout {
                    Layout.fillWidth: true
                    Text {
                        text: sidebar.view.fullDiskAccessTitle
                        font.pixelSize: 12
                        color: Theme.ink
                        Layout.fillWidth: true
                    }
                    Text {
                        visible: sidebar.view.hasFullDiskAccess
                        text: "VERIFIED"
                        font.pixelSize: 10
                        font.weight: Font.Bold
                        color: Theme.safeTeal
                    }
                    KButton {
                        objectName: "grantButton"
                        visible: !sidebar.view.hasFullDiskAccess
                        text: "Grant"
                        padding: 4
                        onClicked: sidebar.view.openFullDiskAccessSettings()
                    }
                }
                PanelRow { label: "Audit Chain"; value: "SHA-256" }
                PanelRow { label: "Deletion Pipeline"; value: "TRASH-FIRST"; valueColor: Theme.safeTeal }
            }

            Panel {
                title: "Developer Bloat"
                rightLabel: "AUTOMATED"
                Layout.fillWidth: true
                Layout.leftMargin: 12
                Layout.rightMargin: 12
                PanelRow { label: "uv & Python Wheels  ~/.cache/uv"; value: "AI/DEV" }
                PanelRow { label: "Docker VM Image  Docker.raw"; value: "" }
                PanelRow { label: "Xcode DerivedData  ~/Library/Caches"; value: "BUILD" }
                PanelRow { label: "HuggingFace & ML  ~/.cache/huggingface"; value: "MODELS" }
                PanelRow { label: "npm & bun stores  ~/.npm  ~/.bun"; value: "PKGS" }
            }

            Panel {
                title: "Agent Protocol"
                rightLabel: "READY"
                rightColor: Theme.safeTeal
                Layout.fillWidth: true
                Layout.leftMargin: 12
                Layout.rightMargin: 12
                PanelRow { label: "MCP Stdio Server"; value: "JSON-RPC 2.0" }
                PanelRow { label: "Autonomous Tools"; value: "9 TOOLS" }
                PanelRow { label: "Rule Synthesizer"; value: "SANDBOXED" }
            }

            Panel {
                title: "Live Verification"
                rightLabel: "INTEGRITY OK"
                rightColor: Theme.safeTeal
                Layout.fillWidth: true
                Layout.leftMargin: 12
                Layout.rightMargin: 12
                Layout.bottomMargin: 16
                PanelRow { label: "Zero 24/7 root daemons"; value: "DAEMON" }
                PanelRow { label: sidebar.view.putBack; value: "TRASH" }
                PanelRow { label: "Immutable SHA-256 log"; value: "AUDIT" }
            }
        }
    }
}
