import QtQuick
import QtTest
import Kestrow.Gui

Item {
    id: root
    width: 1000
    height: 760

    QtObject {
        id: fake
        property var calls: []
        function record(call) { calls = calls.concat([call]) }
        function sw(flag, label, isOn) { return { flag: flag, label: label, detail: "", tag: "", isOn: isOn } }
        function heading(title) { return { title: title, detail: "" } }

        property var frame: ({ title: "KESTROW ENGINE", detail: "Daemon-Free", done: "Done" })
        property var tabs: [{ title: "General", heading: "General Preferences", subtitle: "s" },
                            { title: "Dev Targets", heading: "Developer & AI Engine Targets", subtitle: "s" },
                            { title: "Safety & Audit", heading: "Safety & Deletion Pipeline", subtitle: "s" },
                            { title: "Agents & MCP", heading: "Model Context Protocol & Agents", subtitle: "s" },
                            { title: "Exclusions", heading: "Custom Excluded Folders", subtitle: "s" }]
        property int selectedTab: 0
        property var general: ({ themeSection: heading("Interface Theme"), themeButtons: [], dioramaSection: heading("3D"),
                                 styleCards: [], behaviourTitle: "System & Background Behavior",
                                 behaviourSwitches: [sw(0, "Automatic Scan on Launch", true)], noTrayNote: "",
                                 alertsSection: heading("Alert Thresholds"), alertsNote: "n", junkAlertSwitch: sw(4, "Junk", false),
                                 thresholdLabel: "Trigger Threshold:",
                                 junkThresholdChoices: [{ value: 10, text: "10 GB", isSelected: false }],
                                 lowDiskSection: heading("Low Disk Space Alert"), lowDiskChoices: [] })
        property var developer: ({ note: "n", switches: [] })
        property var safety: ({ deletionSection: heading("Primary Deletion Mode"), deletionModes: [],
                                confirmationSwitch: sw(15, "Require Confirmation Before Sweep", true),
                                accessTitle: "Full Disk Access (FDA)",
                                accessRow: { title: "Full Disk Access Optional", detail: "d", symbol: "lock.shield", offersSettings: true },
                                accessButton: { title: "System Settings…", symbol: "", isEnabled: true }, accessButtonHelp: "Grant Access",
                                auditSection: heading("Cryptographic Audit Chain (SHA-256)"), auditLogPath: "~/.kestrow/audit.jsonl",
                                verifyButton: { title: "Verify Audit Integrity", symbol: "checkmark.seal", isEnabled: true },
                                revealButton: { title: "Show in File Manager", symbol: "folder", isEnabled: true },
                                verdict: { present: false }, recentEntriesTitle: "Recent Logged Operations:", recentEntries: [] })
        property var agents: ({ serverSection: heading("Built-in Stdio MCP Server"), serverText: "t", commandLabel: "Command:",
                                command: "kestrow mcp", copyButton: { title: "Copy MCP Config", symbol: "doc.on.doc", isEnabled: true },
                                toolsTitle: "Tools", tools: [], selfImprovementTitle: "R", selfImprovementNote: "n",
                                ruleSynthesisSwitch: sw(18, "Autonomous Rule Synthesis", false),
                                sensitivitySection: heading("Anomaly Discovery Sensitivity"), sensitivityChoices: [] })
        property var exclusions: ({ title: "User Excluded Paths", addButton: { title: "Add Folder", symbol: "plus", isEnabled: true },
                                    chooser: heading("Exclude Folder"), empty: heading("No custom exclusions added"),
                                    emptySymbol: "folder.badge.minus", rows: [], note: "n", protections: heading("Guaranteed Inherent Protections") })
        function setFlag(flag, on) { record("flag " + flag + " " + on) }
        function chooseJunkThreshold(value) { record("junk " + value) }
        function verifyAudit() { record("verify") }
        function openAccessSettings() { record("access") }
        function copyMCPConfiguration() { record("copy") }
        function removeExclusion(index) { record("remove " + index) }
        function done() { record("done") }
    }

    SettingsSheet { id: sheet; view: fake; width: 900; height: 700; visible: true }

    TestCase {
        name: "Settings"
        when: windowShown

        function init() {
            fake.calls = []
            fake.selectedTab = 0
            sheet.open()
            waitForRendering(root)
        }

        function test_generalSwitchesAndChoicesWriteThroughTheView() {
            mouseClick(findChild(sheet.contentItem, "switch0"))
            compare(fake.calls, ["flag 0 false"])
            mouseClick(findChild(sheet.contentItem, "settingsTab1"))
            compare(fake.selectedTab, 1)
        }

        function test_safetyShowsTheVerdictOnlyAfterACheckAndOffersAccess() {
            fake.selectedTab = 2
            waitForRendering(root)
            verify(findChild(sheet.contentItem, "accessButton").visible)
            verify(!findChild(sheet.contentItem, "verdict").visible)
            mouseClick(findChild(sheet.contentItem, "verifyButton"))
            compare(fake.calls, ["verify"])
            fake.safety = Object.assign({}, fake.safety, { verdict: { present: true, passed: true, symbol: "checkmark.seal.fill",
                                                                      message: "Valid SHA-256 chain: 3 entries verified with 0 tampering." },
                                                           verifyButton: { title: "Verify Audit Integrity", symbol: "", isEnabled: false } })
            waitForRendering(root)
            verify(findChild(sheet.contentItem, "verdict").visible)
            verify(!findChild(sheet.contentItem, "verifyButton").enabled)
        }

        function test_doneClosesTheSheetThroughTheView() {
            mouseClick(findChild(sheet.contentItem, "doneButton"))
            compare(fake.calls, ["done"])
        }
    }
}
