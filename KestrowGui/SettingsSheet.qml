import QtQuick
import QtQuick.Controls
import QtQuick.Dialogs
import QtQuick.Layouts
import Kestrow.Gui

// The Settings sheet: a tab sidebar and the selected tab's sections, all texts and rows from
// the settings view.
Popup {
    id: sheet
    required property var view

    modal: true
    padding: 0
    closePolicy: Popup.CloseOnEscape
    onClosed: view.done()
    background: Rectangle {
        radius: 14
        color: Theme.window
        border.width: 1
        border.color: Theme.hairline
    }

    component SectionTitle: ColumnLayout {
        property var heading
        Layout.fillWidth: true
        Layout.topMargin: 8
        spacing: 2
        Text { text: heading.title; font.pixelSize: 14; font.weight: Font.Bold; color: Theme.ink; Layout.fillWidth: true; wrapMode: Text.WordWrap }
        Text { visible: heading.detail !== ""; text: heading.detail; font.pixelSize: 11; color: Theme.inkSecondary; Layout.fillWidth: true; wrapMode: Text.WordWrap }
    }
    component Note: Text {
        font.pixelSize: 11
        color: Theme.inkTertiary
        Layout.fillWidth: true
        wrapMode: Text.WordWrap
    }
    component SettingSwitch: RowLayout {
        property var model
        Layout.fillWidth: true
        spacing: 12
        ColumnLayout {
            Layout.fillWidth: true
            spacing: 1
            RowLayout {
                spacing: 8
                Text { text: model.label; font.pixelSize: 13; font.weight: Font.DemiBold; color: Theme.ink }
                Pill { visible: model.tag !== ""; text: model.tag; tint: Theme.inkSecondary }
            }
            Text { visible: model.detail !== ""; text: model.detail; font.pixelSize: 11; color: Theme.inkSecondary; Layout.fillWidth: true; wrapMode: Text.WordWrap }
        }
        KSwitch {
            objectName: "switch" + model.flag
            checked: model.isOn
            Accessible.name: model.label
            onToggled: sheet.view.setFlag(model.flag, checked)
        }
    }
    component Choices: Flow {
        property var choices
        signal chosen(int value)
        Layout.fillWidth: true
        spacing: 6
        Repeater {
            model: choices
            delegate: KButton {
                required property var modelData
                text: modelData.text
                prominent: modelData.isSelected
                onClicked: chosen(modelData.value)
            }
        }
    }

    RowLayout {
        anchors.fill: parent
        spacing: 0

        Rectangle {
            Layout.fillHeight: true
            Layout.preferredWidth: 200
            color: Theme.sidebar
            radius: 14
            ColumnLayout {
                anchors.fill: parent
                anchors.margins: 14
                spacing: 4
                Text { text: sheet.view.frame.title; font.pixelSize: 12; font.weight: Font.Bold; color: Theme.ink }
                Text { text: sheet.view.frame.detail; font.pixelSize: 11; color: Theme.safeTeal; Layout.bottomMargin: 12 }
                Repeater {
                    model: sheet.view.tabs
                    delegate: ItemDelegate {
                        required property var modelData
                        required property int index
                        objectName: "settingsTab" + index
                        Layout.fillWidth: true
                        text: modelData.title
                        onClicked: sheet.view.selectedTab = index
                        contentItem: Text { text: parent.text; font.pixelSize: 13; color: Theme.ink }
                        background: Rectangle { radius: 7; color: sheet.view.selectedTab === index ? Theme.panel : "transparent" }
                    }
                }
                Item { Layout.fillHeight: true }
            }
        }

        ColumnLayout {
            Layout.fillWidth: true
            Layout.fillHeight: true
            Layout.margins: 20
            spacing: 12
            RowLayout {
                Layout.fillWidth: true
                ColumnLayout {
                    Layout.fillWidth: true
                    Text { text: sheet.view.tabs[sheet.view.selectedTab].heading; font.pixelSize: 20; font.weight: Font.Bold; color: Theme.ink }
                    Text { text: sheet.view.tabs[sheet.view.selectedTab].subtitle; font.pixelSize: 12; color: Theme.inkSecondary; Layout.fillWidth: true; wrapMode: Text.WordWrap }
                }
                KButton {
                    objectName: "doneButton"
                    text: sheet.view.frame.done
                    prominent: true
                    onClicked: sheet.close()
                }
            }

            ScrollView {
                id: scroller
                Layout.fillWidth: true
                Layout.fillHeight: true
                contentWidth: availableWidth
                clip: true
                StackLayout {
                    width: scroller.availableWidth - 12
                    currentIndex: sheet.view.selectedTab

                    ColumnLayout {
                        spacing: 10
                        readonly property var tab: sheet.view.general
                        SectionTitle { heading: parent.tab.themeSection }
                        Row {
                            spacing: 8
                            Repeater {
                                model: sheet.view.general.themeButtons
                                delegate: KButton {
                                    required property var modelData
                                    objectName: "theme_" + modelData.raw
                                    text: modelData.title
                                    symbol: modelData.symbol
                                    prominent: modelData.isSelected
                                    onClicked: sheet.view.chooseTheme(modelData.raw)
                                }
                            }
                        }
                        SectionTitle { heading: parent.tab.dioramaSection }
                        RowLayout {
                            Layout.fillWidth: true
                            spacing: 10
                            Repeater {
                                model: sheet.view.general.styleCards
                                delegate: Rectangle {
                                    required property var modelData
                                    objectName: "style_" + modelData.raw
                                    Layout.fillWidth: true
                                    Layout.preferredHeight: 236
                                    radius: 10
                                    color: Theme.panel
                                    border.width: modelData.isSelected ? 2 : 1
                                    border.color: modelData.isSelected ? Theme.accentOrange : Theme.hairline
                                    Accessible.role: Accessible.Button
                                    Accessible.name: modelData.title
                                    ColumnLayout {
                                        anchors.fill: parent
                                        anchors.margins: 10
                                        spacing: 3
                                        RowLayout {
                                            spacing: 6
                                            Icon { symbol: modelData.symbol }
                                            Text { text: modelData.title; font.pixelSize: 13; font.weight: Font.DemiBold; color: Theme.ink }
                                            Pill { visible: modelData.isDefault; text: "DEFAULT"; tint: Theme.safeTeal }
                                        }
                                        Text { text: modelData.description; font.pixelSize: 11; color: Theme.inkSecondary; Layout.fillWidth: true; wrapMode: Text.WordWrap }
                                        CityPreview {
                                            style: modelData.raw
                                            Layout.fillWidth: true
                                            Layout.fillHeight: true
                                            Accessible.name: modelData.previewAccessibilityText
                                        }
                                    }
                                    TapHandler { onTapped: sheet.view.chooseStyle(modelData.raw) }
                                }
                            }
                        }
                        SectionTitle { heading: ({ title: parent.tab.behaviourTitle, detail: "" }) }
                        Repeater {
                            model: sheet.view.general.behaviourSwitches
                            delegate: SettingSwitch { required property var modelData; model: modelData }
                        }
                        Note {
                            objectName: "noTrayNote"
                            visible: text !== ""
                            text: parent.tab.noTrayNote
                        }
                        SectionTitle { heading: parent.tab.alertsSection }
                        Note { text: parent.tab.alertsNote }
                        SettingSwitch { model: parent.tab.junkAlertSwitch }
                        Text { text: parent.tab.thresholdLabel; font.pixelSize: 12; color: Theme.ink }
                        Choices {
                            choices: parent.tab.junkThresholdChoices
                            onChosen: value => sheet.view.chooseJunkThreshold(value)
                        }
                        SectionTitle { heading: parent.tab.lowDiskSection }
                        Choices {
                            choices: parent.tab.lowDiskChoices
                            onChosen: value => sheet.view.chooseLowDiskAlert(value)
                        }
                    }

                    ColumnLayout {
                        spacing: 10
                        Note { text: sheet.view.developer.note }
                        Repeater {
                            model: sheet.view.developer.switches
                            delegate: SettingSwitch { required property var modelData; model: modelData }
                        }
                    }

                    ColumnLayout {
                        spacing: 10
                        readonly property var tab: sheet.view.safety
                        SectionTitle { heading: parent.tab.deletionSection }
                        Repeater {
                            model: sheet.view.safety.deletionModes
                            delegate: Rectangle {
                                required property var modelData
                                Layout.fillWidth: true
                                implicitHeight: modeColumn.implicitHeight + 20
                                radius: 10
                                color: Theme.panel
                                border.width: 1
                                border.color: Theme.hairline
                                ColumnLayout {
                                    id: modeColumn
                                    anchors.fill: parent
                                    anchors.margins: 10
                                    spacing: 2
                                    RowLayout {
                                        spacing: 8
                                        Text { text: modelData.title; font.pixelSize: 13; font.weight: Font.DemiBold; color: Theme.ink }
                                        Pill { text: modelData.mark; tint: modelData.note === "" ? Theme.safeTeal : Theme.inkTertiary }
                                    }
                                    Text { text: modelData.detail; font.pixelSize: 11; color: Theme.inkSecondary; Layout.fillWidth: true; wrapMode: Text.WordWrap }
                                    Note { visible: modelData.note !== ""; text: modelData.note }
                                }
                            }
                        }
                        SettingSwitch { model: parent.tab.confirmationSwitch }
                        SectionTitle { heading: ({ title: parent.tab.accessTitle, detail: "" }) }
                        RowLayout {
                            Layout.fillWidth: true
                            spacing: 10
                            Icon { symbol: parent.parent.tab.accessRow.symbol; size: 20 }
                            ColumnLayout {
                                Layout.fillWidth: true
                                spacing: 1
                                Text { text: sheet.view.safety.accessRow.title; font.pixelSize: 13; font.weight: Font.DemiBold; color: Theme.ink }
                                Text { text: sheet.view.safety.accessRow.detail; font.pixelSize: 11; color: Theme.inkSecondary; Layout.fillWidth: true; wrapMode: Text.WordWrap }
                            }
                            KButton {
                                objectName: "accessButton"
                                visible: sheet.view.safety.accessRow.offersSettings
                                text: sheet.view.safety.accessButton.title
                                help: sheet.view.safety.accessButtonHelp
                                onClicked: sheet.view.openAccessSettings()
                            }
                        }
                        SectionTitle { heading: parent.tab.auditSection }
                        Text { text: parent.tab.auditLogPath; font.family: "monospace"; font.pixelSize: 12; color: Theme.ink }
                        Row {
                            spacing: 8
                            KButton {
                                objectName: "verifyButton"
                                text: sheet.view.safety.verifyButton.title
                                symbol: sheet.view.safety.verifyButton.symbol
                                enabled: sheet.view.safety.verifyButton.isEnabled
                                onClicked: sheet.view.verifyAudit()
                            }
                            KButton {
                                objectName: "revealButton"
                                text: sheet.view.safety.revealButton.title
                                symbol: sheet.view.safety.revealButton.symbol
                                onClicked: sheet.view.revealAuditLog()
                            }
                        }
                        RowLayout {
                            visible: sheet.view.safety.verdict.present
                            Layout.fillWidth: true
                            Icon {
                                symbol: sheet.view.safety.verdict.symbol || ""
                                color: sheet.view.safety.verdict.passed ? Theme.safeTeal : Theme.dangerRed
                            }
                            Text {
                                objectName: "verdict"
                                text: sheet.view.safety.verdict.message || ""
                                font.pixelSize: 12
                                color: sheet.view.safety.verdict.passed ? Theme.safeTeal : Theme.dangerRed
                                Layout.fillWidth: true
                                wrapMode: Text.WordWrap
                            }
                        }
                        Text {
                            visible: sheet.view.safety.verdict.present
                            text: parent.tab.recentEntriesTitle
                            font.pixelSize: 12
                            font.weight: Font.DemiBold
                            color: Theme.ink
                        }
                        Repeater {
                            model: sheet.view.safety.recentEntries
                            delegate: RowLayout {
                                required property var modelData
                                Layout.fillWidth: true
                                Text { text: modelData.kind; font.family: "monospace"; font.pixelSize: 11; color: Theme.ink; Layout.preferredWidth: 80 }
                                Text { text: modelData.time; font.pixelSize: 11; color: Theme.inkSecondary; Layout.fillWidth: true }
                                Text { text: modelData.items; font.pixelSize: 11; color: Theme.inkSecondary }
                            }
                        }
                    }

                    ColumnLayout {
                        spacing: 10
                        readonly property var tab: sheet.view.agents
                        RowLayout {
                            Layout.fillWidth: true
                            Text { text: parent.parent.tab.serverSection.title; font.pixelSize: 14; font.weight: Font.Bold; color: Theme.ink }
                            Pill { text: sheet.view.agents.serverSection.detail; tint: Theme.safeTeal }
                        }
                        Text { text: parent.tab.serverText; font.pixelSize: 12; color: Theme.inkSecondary; Layout.fillWidth: true; wrapMode: Text.WordWrap }
                        RowLayout {
                            spacing: 8
                            Text { text: sheet.view.agents.commandLabel; font.pixelSize: 12; color: Theme.ink }
                            Text { text: sheet.view.agents.command; font.family: "monospace"; font.pixelSize: 12; color: Theme.ink }
                        }
                        KButton {
                            objectName: "copyButton"
                            text: sheet.view.agents.copyButton.title
                            symbol: sheet.view.agents.copyButton.symbol
                            onClicked: sheet.view.copyMCPConfiguration()
                        }
                        Text { text: parent.tab.toolsTitle; font.pixelSize: 12; font.weight: Font.DemiBold; color: Theme.ink; Layout.topMargin: 6 }
                        Repeater {
                            model: sheet.view.agents.tools
                            delegate: RowLayout {
                                required property var modelData
                                Layout.fillWidth: true
                                Text { text: modelData.name; font.family: "monospace"; font.pixelSize: 11; color: Theme.ink; Layout.preferredWidth: 150 }
                                Text { text: modelData.line; font.pixelSize: 11; color: Theme.inkSecondary; Layout.fillWidth: true; elide: Text.ElideRight }
                            }
                        }
                        SectionTitle { heading: ({ title: parent.tab.selfImprovementTitle, detail: "" }) }
                        Note { text: parent.tab.selfImprovementNote }
                        SettingSwitch { model: parent.tab.ruleSynthesisSwitch }
                        SectionTitle { heading: parent.tab.sensitivitySection }
                        Choices {
                            choices: parent.tab.sensitivityChoices
                            onChosen: value => sheet.view.chooseSensitivity(value)
                        }
                    }

                    ColumnLayout {
                        spacing: 10
                        readonly property var tab: sheet.view.exclusions
                        RowLayout {
                            Layout.fillWidth: true
                            Text { text: parent.parent.tab.title; font.pixelSize: 14; font.weight: Font.Bold; color: Theme.ink; Layout.fillWidth: true }
                            KButton {
                                objectName: "addFolder"
                                text: sheet.view.exclusions.addButton.title
                                symbol: sheet.view.exclusions.addButton.symbol
                                onClicked: folderChooser.open()
                            }
                        }
                        RowLayout {
                            visible: sheet.view.exclusions.rows.length === 0
                            Layout.fillWidth: true
                            spacing: 10
                            Icon { symbol: sheet.view.exclusions.emptySymbol; size: 20; color: Theme.inkSecondary }
                            ColumnLayout {
                                Layout.fillWidth: true
                                spacing: 1
                                Text { text: sheet.view.exclusions.empty.title; font.pixelSize: 13; color: Theme.ink }
                                Text { text: sheet.view.exclusions.empty.detail; font.pixelSize: 11; color: Theme.inkSecondary; Layout.fillWidth: true; wrapMode: Text.WordWrap }
                            }
                        }
                        Repeater {
                            model: sheet.view.exclusions.rows
                            delegate: RowLayout {
                                required property var modelData
                                Layout.fillWidth: true
                                Icon { symbol: modelData.symbol }
                                Text { text: modelData.path; font.pixelSize: 12; color: Theme.ink; Layout.fillWidth: true; elide: Text.ElideMiddle }
                                KButton {
                                    symbol: modelData.removeSymbol
                                    Accessible.name: "Remove " + modelData.path
                                    onClicked: sheet.view.removeExclusion(modelData.index)
                                }
                            }
                        }
                        Note { text: parent.tab.note }
                        SectionTitle { heading: parent.tab.protections }
                    }
                }
            }
        }
    }

    FolderDialog {
        id: folderChooser
        title: sheet.view.exclusions.chooser.title
        onAccepted: sheet.view.addExclusion(selectedFolder)
    }
}
