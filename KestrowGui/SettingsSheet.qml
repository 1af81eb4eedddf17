import QtQuick
import QtQuick.Controls
import QtQuick.Dialogs
import QtQuick.Layouts
import Kestrow.Gui

// The Settings sheet: five tabs over the persisted preferences.
Popup {
    id: sheet
    property var settings
    property bool trayAvailable: true
    property int tab: 0
    signal done

    modal: true
    padding: 0
    closePolicy: Popup.CloseOnEscape
    onClosed: done()
    background: Rectangle {
        radius: 14
        color: Theme.window
        border.width: 1
        border.color: Theme.hairline
    }

    readonly property var tabs: [
        { title: "General", heading: "General Preferences", subtitle: "Startup behaviors, thermal safety, and live telemetry" },
        { title: "Dev Targets", heading: "Developer & AI Engine Targets", subtitle: "Configure deep scanning for developer toolchains and AI models" },
        { title: "Safety & Audit", heading: "Safety & Deletion Pipeline", subtitle: "Defensive guarantees, Trash staging, and tamper-evident audit log" },
        { title: "Agents & MCP", heading: "Model Context Protocol & Agents", subtitle: "Autonomous agent access, stdio JSON-RPC 2.0, and security token" },
        { title: "Exclusions", heading: "Custom Excluded Folders", subtitle: "Directories and patterns Kestrow will strictly ignore and never touch" }
    ]

    component SettingSwitch: RowLayout {
        property alias label: labelText.text
        property alias detail: detailText.text
        property string key
        Layout.fillWidth: true
        spacing: 12
        ColumnLayout {
            Layout.fillWidth: true
            spacing: 1
            Text { id: labelText; font.pixelSize: 13; font.weight: Font.DemiBold; color: Theme.ink; Layout.fillWidth: true; wrapMode: Text.WordWrap }
            Text { id: detailText; visible: text !== ""; font.pixelSize: 11; color: Theme.inkSecondary; Layout.fillWidth: true; wrapMode: Text.WordWrap }
        }
        Switch {
            objectName: "switch_" + parent.key
            checked: sheet.settings[parent.key]
            Accessible.name: labelText.text
            onToggled: sheet.settings[parent.key] = checked
        }
    }
    component Note: Text {
        font.pixelSize: 11
        color: Theme.inkTertiary
        Layout.fillWidth: true
        wrapMode: Text.WordWrap
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
                Text { text: "KESTROW ENGINE"; font.pixelSize: 12; font.weight: Font.Bold; color: Theme.ink }
                Text { text: "Daemon-Free"; font.pixelSize: 11; color: Theme.safeTeal; Layout.bottomMargin: 12 }
                Repeater {
                    model: sheet.tabs
                    delegate: ItemDelegate {
                        required property var modelData
                        required property int index
                        objectName: "settingsTab" + index
                        Layout.fillWidth: true
                        text: modelData.title
                        onClicked: sheet.tab = index
                        contentItem: Text { text: parent.text; font.pixelSize: 13; color: Theme.ink }
                        background: Rectangle { radius: 7; color: sheet.tab === index ? Theme.panel : "transparent" }
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
                    Text { text: sheet.tabs[sheet.tab].heading; font.pixelSize: 20; font.weight: Font.Bold; color: Theme.ink }
                    Text { text: sheet.tabs[sheet.tab].subtitle; font.pixelSize: 12; color: Theme.inkSecondary; Layout.fillWidth: true; wrapMode: Text.WordWrap }
                }
                KButton {
                    objectName: "doneButton"
                    text: "Done"
                    prominent: true
                    onClicked: sheet.close()
                }
            }

            ScrollView {
                Layout.fillWidth: true
                Layout.fillHeight: true
                contentWidth: availableWidth
                clip: true
                StackLayout {
                    width: parent.width
                    currentIndex: sheet.tab

                    ColumnLayout {
                        spacing: 12
                        Text { text: "Interface Theme"; font.pixelSize: 14; font.weight: Font.Bold; color: Theme.ink }
                        Row {
                            spacing: 8
                            Repeater {
                                model: [{ raw: "system", title: "System", symbol: "laptopcomputer" },
                                        { raw: "light", title: "Light", symbol: "sun.max.fill" },
                                        { raw: "dark", title: "Dark", symbol: "moon.fill" }]
                                delegate: KButton {
                                    required property var modelData
                                    text: modelData.title
                                    symbol: modelData.symbol
                                    prominent: sheet.settings.appThemeRaw === modelData.raw
                                    onClicked: sheet.settings.appThemeRaw = modelData.raw
                                }
                            }
                        }
                        Text { text: "System & Background Behavior"; font.pixelSize: 14; font.weight: Font.Bold; color: Theme.ink }
                        SettingSwitch { key: "autoScanOnLaunch"; label: "Automatic Scan on Launch"; detail: "Survey disk capacity and cache sizes when Kestrow starts up" }
                        SettingSwitch { key: "thermalGovernorEnabled"; label: "Thermal Governor Protection" }
                        SettingSwitch { key: "reduceDioramaMotion"; label: "Reduced Motion for 3D Diorama" }
                        SettingSwitch { key: "showMenuBarExtra"; label: "Menu Bar Companion" }
                        Note {
                            objectName: "noTrayNote"
                            visible: !sheet.trayAvailable
                            text: "This desktop has no system tray: the companion can't be shown here."
                        }
                        Text { text: "Alert Thresholds"; font.pixelSize: 14; font.weight: Font.Bold; color: Theme.ink }
                        Note { text: "Alerts aren't sent yet. These choices are saved and will apply once notifications ship." }
                        SettingSwitch { key: "notifyOnThreshold"; label: "Developer Junk Threshold Alert"; detail: "Notify when safe sweepable cache bloat exceeds configured size" }
                    }

                    ColumnLayout {
                        spacing: 10
                        Note { text: "Targets you switch off are skipped by the app's scans and sweeps, from the next scan on. The kestrow CLI and MCP server don't read these settings." }
                        SettingSwitch { key: "targetUvPython"; label: "uv & Python Wheels"; detail: "AI/DEV" }
                        SettingSwitch { key: "targetDockerVM"; label: "Docker VM Image"; detail: "CONTAINERS" }
                        SettingSwitch { key: "targetXcode"; label: "Xcode DerivedData"; detail: "MACOS/IOS" }
                        SettingSwitch { key: "targetAIModels"; label: "AI Models"; detail: "LLM/MODELS" }
                        SettingSwitch { key: "targetNpmBun"; label: "npm & bun stores"; detail: "JAVASCRIPT" }
                        SettingSwitch { key: "targetCargo"; label: "Cargo registry"; detail: "RUST" }
                        SettingSwitch { key: "targetHomebrew"; label: "Homebrew"; detail: "SYSTEM/CLI" }
                        SettingSwitch { key: "targetSystemCaches"; label: "System caches"; detail: "SYSTEM" }
                        SettingSwitch { key: "targetBrowserCaches"; label: "Browser caches"; detail: "BROWSERS" }
                    }

                    ColumnLayout {
                        spacing: 10
                        Text { text: "Primary Deletion Mode"; font.pixelSize: 14; font.weight: Font.Bold; color: Theme.ink }
                        Note { text: "Permanent Purge isn't available in the app yet: every sweep goes to the Trash, restorable with Put Back." }
                        SettingSwitch { key: "confirmBeforeClean"; label: "Require Confirmation Before Sweep"; detail: "Show what Run sweep will move, by category, and ask before anything goes to the Trash" }
                        Text { text: "Cryptographic Audit Chain (SHA-256)"; font.pixelSize: 14; font.weight: Font.Bold; color: Theme.ink }
                        Note { text: "Every sweep operation is cryptographically hashed in an append-only JSONL ledger. Any tampering or deletion breaks the hash chain." }
                        Text { text: "~/.kestrow/audit.jsonl"; font.family: "monospace"; font.pixelSize: 12; color: Theme.ink }
                    }

                    ColumnLayout {
                        spacing: 10
                        Text { text: "Built-in Stdio MCP Server"; font.pixelSize: 14; font.weight: Font.Bold; color: Theme.ink }
                        Text { text: "Command:  kestrow mcp"; font.family: "monospace"; font.pixelSize: 12; color: Theme.ink }
                        SettingSwitch { key: "autonomousRuleSynthesis"; label: "Autonomous Rule Synthesis"; detail: "Allow AI agents to propose new cleanup rules into the sandboxed registry" }
                    }

                    ColumnLayout {
                        spacing: 10
                        RowLayout {
                            Layout.fillWidth: true
                            Text { text: "User Excluded Paths"; font.pixelSize: 14; font.weight: Font.Bold; color: Theme.ink; Layout.fillWidth: true }
                            KButton {
                                objectName: "addFolder"
                                text: "Add Folder"
                                symbol: "plus"
                                onClicked: folderChooser.open()
                            }
                        }
                        Text {
                            visible: sheet.settings.excludedPaths.length === 0
                            text: "No custom exclusions added"
                            font.pixelSize: 13
                            color: Theme.inkSecondary
                        }
                        Repeater {
                            model: sheet.settings.excludedPaths
                            delegate: RowLayout {
                                required property string modelData
                                Layout.fillWidth: true
                                Icon { symbol: "folder.fill" }
                                Text { text: modelData; font.pixelSize: 12; color: Theme.ink; Layout.fillWidth: true; elide: Text.ElideMiddle }
                                KButton { symbol: "xmark.circle.fill"; Accessible.name: "Remove " + modelData; onClicked: sheet.settings.removeExclusion(modelData) }
                            }
                        }
                        Note { text: "Exclusions apply to the Kestrow app's scans, Run sweep, and orphan sweeps. The kestrow CLI and MCP server don't read them." }
                    }
                }
            }
        }
    }

    FolderDialog {
        id: folderChooser
        title: "Exclude Folder"
        onAccepted: sheet.settings.addExclusion(decodeURIComponent(selectedFolder.toString().replace(/^file:\/\//, "")))
    }
}
