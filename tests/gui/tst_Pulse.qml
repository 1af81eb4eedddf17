import QtQuick
import QtTest
import Kestrow.Gui

Item {
    width: 1100
    height: 1000

    QtObject {
        id: fake
        property var calls: []
        property string selectedTab: "Pulse"
        property var tabs: [{ id: "Pulse", title: "Pulse", icon: "waveform.path.ecg", hasBadge: true, badgeText: "", badgeColor: "safeTeal" },
                            { id: "Uninstall", title: "Uninstall", icon: "shippingbox", hasBadge: true, badgeText: "3 ORPHANS", badgeColor: "askAmber" }]
        property bool isBusy: false
        property bool isScanning: false
        property bool isCleaning: false
        property bool hasFullDiskAccess: false
        property bool hasVitals: false
        property bool hasScan: false
        property string mainButtonTitle: "Scan this computer"
        property string mainButtonIcon: "magnifyingglass"
        property string freeSpaceText: "-- GB of -- GB"
        property string freeSpaceAccessibleText: "Free space"
        property string lastSweepLine: ""
        property string capacityFreeText: "--"
        property string capacityTotalText: "--"
        property string liveVolumeMark: "EXT4 LIVE"
        property var segments: []
        property string thermalText: "ACTIVE"
        property string thermalColor: "safeTeal"
        property string memoryBadgeText: ""
        property string memoryBadgeColor: "inkTertiary"
        property string cpuText: "--"
        property string memoryText: "--"
        property var cpuMeter: ({ present: false, lit: 0, miniLit: 0, text: "--", charging: false })
        property var memoryMeter: ({ present: false, lit: 0, miniLit: 0, text: "--", charging: false })
        property var batteryMeter: ({ present: false, lit: 0, miniLit: 0, text: "--", charging: false })
        property string fullDiskAccessBanner: "Grant access to inspect more."
        property string footprintTitle: "Storage Footprint"
        property bool footprintPending: true
        property string footprintPendingTitle: "Deep scan pending"
        property string footprintPendingDetail: "Run a scan to measure package caches, AI models, and junk."
        property var footprintRows: []
        property string fullDiskAccessTitle: "FDA Optional"
        property bool canRunSweep: false
        property string scanAgainTitle: "Scan again"
        property string statusText: "Status: Ready"
        property string statusDotColor: "safeTeal"
        property string putBack: "Restore in your file manager"
        property ListModel sweepGroups: ListModel {}
        function trackWidths(width) { return [] }
        function record(name) { calls = calls.concat([name]) }
        function pressMainButton() { record("main") }
        function runSmartScan() { record("scan") }
        function cleanSafeItems() { record("clean") }
        function openFullDiskAccessSettings() { record("fda") }
    }

    Row {
        anchors.fill: parent
        Sidebar { id: sidebar; view: fake; width: 290; height: parent.height }
        PulseScreen { id: screen; view: fake; width: 800; height: parent.height }
    }

    TestCase {
        name: "Pulse"
        when: windowShown

        function init() {
            fake.calls = []
            fake.isBusy = false
            fake.isScanning = false
            fake.hasScan = false
            fake.hasVitals = false
            fake.canRunSweep = false
            fake.sweepGroups.clear()
        }

        function text(item) { return item ? item.text : undefined }

        function test_beforeAnyScan() {
            verify(findChild(screen, "fdaBanner").visible)
            verify(!findChild(screen, "scanningMark").visible)
            compare(findChild(screen, "capacityFree").text, "--")
            verify(!findChild(screen, "runSweepButton").enabled)
            verify(findChild(screen, "scanAgainButton").enabled)
            compare(findChild(screen, "statusText").text, "Status: Ready")
            verify(!findChild(screen, "batteryRow").visible)
            mouseClick(findChild(screen, "scanAgainButton"))
            mouseClick(findChild(screen, "runSweepButton"))
            compare(fake.calls, ["scan"], "a disabled Run sweep calls nothing")
        }

        function test_afterAScanWithSafeItems() {
            fake.hasScan = true
            fake.canRunSweep = true
            fake.hasFullDiskAccess = true
            fake.sweepGroups.append({ name: "Developer Caches", hint: "pip, yarn", pillText: "Safe to sweep", pillColor: "safeTeal", sizeText: "1.5 GB" })
            waitForRendering(screen)
            verify(!findChild(screen, "fdaBanner").visible)
            // The rows ready to sweep take the wider part of their row, beside the live read.
            const vitals = findChild(screen, "vitalsPanel")
            const rows = findChild(screen, "sweepRowsPanel")
            verify(rows.width > vitals.width, "the rows are " + rows.width + " wide, the live read " + vitals.width)
            verify(vitals.width >= 330)
            mouseClick(findChild(screen, "runSweepButton"))
            compare(fake.calls, ["clean"])
            fake.hasFullDiskAccess = false
        }

        function test_busyDisablesBothRunButtonsAndTheMainButton() {
            fake.isBusy = true
            fake.isScanning = true
            verify(findChild(screen, "scanningMark").visible)
            verify(!findChild(screen, "scanAgainButton").enabled)
            verify(!findChild(sidebar, "mainButton").enabled)
            mouseClick(findChild(sidebar, "mainButton"))
            compare(fake.calls, [])
        }

        function test_sidebarTabsBadgesAndMainButton() {
            compare(findChild(sidebar, "mainButton").text, "Scan this computer")
            mouseClick(findChild(sidebar, "mainButton"))
            compare(fake.calls, ["main"])
            const uninstall = findChild(sidebar, "nav_Uninstall")
            compare(findChild(uninstall, "badge").text, "3 ORPHANS")
            verify(findChild(findChild(sidebar, "nav_Pulse"), "badgeDot").visible)
            mouseClick(uninstall)
            compare(fake.selectedTab, "Uninstall")
            fake.selectedTab = "Pulse"
            mouseClick(findChild(sidebar, "grantButton"))
            compare(fake.calls, ["main", "fda"])
        }
    }
}
