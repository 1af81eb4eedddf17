import QtQuick
import QtTest
import Kestrow.Gui

Item {
    width: 900
    height: 800

    QtObject {
        id: fake
        property var calls: []
        property bool isBusy: false
        property var filters: ["All", "Safe to sweep", "Ask me first"]
        property string filter: "All"
        property string screenState: "noScan"
        property string rowsState: "rows"
        property string totalText: "1.5 GB"
        property string totalAccessibleText: "Ready to sweep, 1.5 GB"
        property ListModel rows: ListModel {}
        function runSmartScan() { calls = calls.concat(["scan"]) }
    }

    SweepScreen { id: screen; view: fake; anchors.fill: parent }

    TestCase {
        name: "Sweep"
        when: windowShown

        function init() {
            fake.calls = []
            fake.isBusy = false
            fake.filter = "All"
            fake.rows.clear()
        }

        function test_noScanOffersAScan() {
            fake.screenState = "noScan"
            verify(findChild(screen, "noScanState").visible)
            verify(!findChild(screen, "rowsState").visible)
            const button = findChild(findChild(screen, "noScanState"), "emptyButton")
            compare(button.text, "Scan now")
            mouseClick(button)
            compare(fake.calls, ["scan"])
            fake.isBusy = true
            verify(!button.enabled)
        }

        function test_scanningHidesTheOldRows() {
            fake.screenState = "scanning"
            verify(findChild(screen, "scanningState").visible)
            verify(!findChild(screen, "rowsState").visible)
        }

        function test_rowsTheFilterAndTheEmptyStates() {
            fake.screenState = "rows"
            fake.rowsState = "rows"
            fake.rows.append({ name: "Developer Caches", symbol: "shippingbox.fill", countText: "1 items", pillText: "Safe to sweep",
                               pillColor: "safeTeal", sizeText: "1.5 GB", accessibleText: "Developer Caches, 1 items, Safe to sweep, 1.5 GB" })
            waitForRendering(screen)
            verify(findChild(screen, "rowsState").visible)
            compare(findChild(screen, "totalText").text, "1.5 GB")
            compare(findChild(screen, "totalLine").Accessible.name, "Ready to sweep, 1.5 GB")
            mouseClick(findChild(screen, "filter_Ask me first"))
            compare(fake.filter, "Ask me first")
            fake.rowsState = "nothingMatches"
            verify(findChild(screen, "nothingMatches").visible)
            verify(!findChild(screen, "handsOff").visible)
            fake.rowsState = "handsOff"
            verify(findChild(screen, "handsOff").visible)
            mouseClick(findChild(screen, "scanAgainButton"))
            compare(fake.calls, ["scan"])
        }
    }
}
