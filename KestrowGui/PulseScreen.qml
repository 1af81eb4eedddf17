import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Kestrow.Gui

// The home screen: where the disk stands, what can be taken back, and the two run buttons.
ScrollView {
    id: screen
    property var view

    contentWidth: availableWidth
    clip: true

    component MeterRow: RowLayout {
        property alias label: name.text
        property var meter
        visible: meter.present
        spacing: 10
        Text {
            id: name
            font.pixelSize: 11
            font.weight: Font.Bold
            color: Theme.inkSecondary
            Layout.preferredWidth: 64
        }
        Meter {
            lit: parent.meter.lit
        }
        Text {
            text: parent.meter.text
            font.pixelSize: 12
            color: Theme.ink
            Layout.fillWidth: true
            horizontalAlignment: Text.AlignRight
        }
    }

    ColumnLayout {
        width: screen.availableWidth
        spacing: 14

        ScreenHeader {
            Layout.fillWidth: true
            title: "Pulse"
            subtitle: "Where your disk stands, and what you can take back today."
            Pill {
                objectName: "scanningMark"
                visible: screen.view.isScanning
                text: "SCANNING"
                tint: Theme.accentOrange
                Accessible.name: "Scanning in progress"
            }
        }

        Panel {
            objectName: "fdaBanner"
            visible: !screen.view.hasFullDiskAccess
            Layout.fillWidth: true
            RowLayout {
                Layout.fillWidth: true
                spacing: 12
                ColumnLayout {
                    Layout.fillWidth: true
                    RowLayout {
                        Text { text: "Full Disk Access"; font.pixelSize: 14; font.weight: Font.DemiBold; color: Theme.ink }
                        Pill { text: "Optional"; tint: Theme.inkTertiary }
                    }
                    Text {
                        text: screen.view.fullDiskAccessBanner
                        font.pixelSize: 12
                        color: Theme.inkSecondary
                        wrapMode: Text.WordWrap
                        Layout.fillWidth: true
                    }
                }
                KButton {
                    text: "Open Settings"
                    onClicked: screen.view.openFullDiskAccessSettings()
                }
            }
        }

        Panel {
            title: "Capacity"
            rightLabel: screen.view.liveVolumeMark
            Layout.fillWidth: true
            Row {
                spacing: 8
                Text {
                    objectName: "capacityFree"
                    text: screen.view.capacityFreeText
                    font.pixelSize: 40
                    font.weight: Font.Bold
                    color: Theme.ink
                }
                Text {
                    text: "/ " + screen.view.capacityTotalText + " GB free"
                    font.pixelSize: 15
                    color: Theme.inkSecondary
                    anchors.baseline: parent.children[0].baseline
                }
            }
            CapacityTrack {
                view: screen.view
                Layout.fillWidth: true
                implicitHeight: 18
            }
            Flow {
                Layout.fillWidth: true
                spacing: 16
                Repeater {
                    model: screen.view.segments
                    delegate: Row {
                        required property var modelData
                        spacing: 6
                        Rectangle {
                            width: 10
                            height: 10
                            radius: 2
                            anchors.verticalCenter: parent.verticalCenter
                            color: parent.modelData.striped ? Qt.rgba(Theme.color(parent.modelData.colorName).r,
                                                                      Theme.color(parent.modelData.colorName).g,
                                                                      Theme.color(parent.modelData.colorName).b, 0.5)
                                                            : Theme.color(parent.modelData.colorName)
                            border.width: parent.modelData.striped ? 1 : 0
                            border.color: Theme.color(parent.modelData.colorName)
                        }
                        Text {
                            text: parent.modelData.label + "  " + parent.modelData.valueGB + " GB"
                            font.pixelSize: 12
                            color: Theme.inkSecondary
                        }
                    }
                }
            }
        }

        RowLayout {
            Layout.fillWidth: true
            spacing: 14
            Panel {
                objectName: "vitalsPanel"
                title: "Live read"
                // A third of the row; the rows ready to sweep take the rest.
                Layout.preferredWidth: Math.max(330, (parent.width - parent.spacing) / 3)
                Layout.alignment: Qt.AlignTop
                MeterRow { label: "CPU"; meter: screen.view.cpuMeter }
                MeterRow { label: "MEMORY"; meter: screen.view.memoryMeter }
                MeterRow { objectName: "batteryRow"; label: "BATTERY"; meter: screen.view.batteryMeter }
                Text {
                    visible: !screen.view.hasVitals
                    text: "Vitals unavailable."
                    font.pixelSize: 13
                    color: Theme.inkSecondary
                }
            }
            Panel {
                objectName: "sweepRowsPanel"
                title: "Ready to sweep"
                Layout.preferredWidth: 0
                Layout.fillWidth: true
                Layout.alignment: Qt.AlignTop
                Text {
                    visible: groups.count === 0
                    text: screen.view.hasScan ? "Nothing to sweep yet." : "No scan yet."
                    font.pixelSize: 14
                    font.weight: Font.DemiBold
                    color: Theme.ink
                }
                Text {
                    visible: groups.count === 0
                    text: screen.view.hasScan ? "Run a scan from Pulse to see what's freeable."
                                              : "Run a scan to see what you can take back."
                    font.pixelSize: 12
                    color: Theme.inkSecondary
                    Layout.fillWidth: true
                    wrapMode: Text.WordWrap
                }
                Repeater {
                    id: groups
                    model: screen.view.sweepGroups
                    delegate: RowLayout {
                        required property string name
                        required property string hint
                        required property string pillText
                        required property string pillColor
                        required property string sizeText
                        Layout.fillWidth: true
                        spacing: 10
                        Accessible.name: name + ", " + pillText + ", " + sizeText
                        ColumnLayout {
                            Layout.fillWidth: true
                            spacing: 0
                            Text { text: name; font.pixelSize: 13; font.weight: Font.DemiBold; color: Theme.ink; Layout.fillWidth: true; elide: Text.ElideRight }
                            Text { text: hint; visible: hint !== ""; font.pixelSize: 11; color: Theme.inkTertiary; Layout.fillWidth: true; elide: Text.ElideRight }
                        }
                        Pill { text: pillText; tint: Theme.color(pillColor) }
                        Text {
                            text: sizeText
                            font.pixelSize: 13
                            color: Theme.ink
                            horizontalAlignment: Text.AlignRight
                            Layout.preferredWidth: 72
                        }
                    }
                }
            }
        }

        RowLayout {
            Layout.fillWidth: true
            spacing: 10
            KButton {
                objectName: "runSweepButton"
                text: "Run sweep"
                symbol: "paintbrush.pointed.fill"
                prominent: true
                enabled: screen.view.canRunSweep
                help: "Moves safe items to the Trash. Nothing is deleted: everything is restorable."
                onClicked: screen.view.cleanSafeItems()
            }
            KButton {
                objectName: "scanAgainButton"
                text: screen.view.scanAgainTitle
                symbol: "magnifyingglass"
                enabled: !screen.view.isBusy
                onClicked: screen.view.runSmartScan()
            }
            Text {
                Layout.fillWidth: true
                wrapMode: Text.WordWrap
                font.pixelSize: 12
                color: Theme.inkSecondary
                textFormat: Text.StyledText
                text: "<b>Nothing is deleted.</b> Everything lands in the Trash: restorable, audited, only what you approved."
            }
        }

        RowLayout {
            objectName: "statusRow"
            Layout.fillWidth: true
            Layout.bottomMargin: 12
            spacing: 8
            Rectangle {
                objectName: "statusDot"
                width: 8
                height: 8
                radius: 4
                color: Theme.color(screen.view.statusDotColor)
            }
            Text {
                objectName: "statusText"
                text: screen.view.statusText
                font.pixelSize: 12
                color: Theme.inkSecondary
                Layout.fillWidth: true
                elide: Text.ElideRight
            }
        }
    }
}
