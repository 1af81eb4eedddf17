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
        property string screenState: "noMap"
        property var crumbs: []
        property bool canGoUp: false
        property ListModel rows: ListModel {}
        function record(call) { calls = calls.concat([call]) }
        function appear() { record("appear") }
        function loadSpaceLens() { record("survey") }
        function drillIn(row) { record("in " + row) }
        function drillOut() { record("out") }
        function drillTo(index) { record("to " + index) }
    }

    AtlasScreen { id: screen; view: fake; anchors.fill: parent }

    TestCase {
        name: "Atlas"
        when: windowShown

        function init() {
            fake.calls = []
            fake.isBusy = false
            fake.rows.clear()
        }

        function test_appearingStartsAFirstSurveyOnce() {
            screen.shown = true
            tryCompare(fake, "calls", ["appear"])
            screen.shown = false
        }

        function test_surveyingAndNoMap() {
            fake.screenState = "surveying"
            verify(findChild(screen, "surveyingState").visible)
            fake.screenState = "noMap"
            const button = findChild(findChild(screen, "noMapState"), "emptyButton")
            compare(button.text, "Survey now")
            mouseClick(button)
            compare(fake.calls, ["survey"])
        }

        function test_mapRowsAndBreadcrumb() {
            fake.screenState = "map"
            fake.crumbs = [{ title: "Home", isLast: false }, { title: "src", isLast: true }]
            fake.canGoUp = true
            fake.rows.append({ name: "build", symbol: "folder.fill", isDirectory: true, sizeText: "2 GB", fraction: 0.5, accessibleText: "folder build" })
            fake.rows.append({ name: "core", symbol: "doc.fill", isDirectory: false, sizeText: "1 GB", fraction: 1.0, accessibleText: "file core" })
            waitForRendering(screen)
            compare(findChild(screen, "crumb1").Accessible.name, "Current src")
            verify(!findChild(screen, "crumb1").enabled)
            mouseClick(findChild(screen, "crumb0"))
            mouseClick(findChild(screen, "upButton"))
            mouseClick(findChild(screen, "atlasRow0"))
            mouseClick(findChild(screen, "atlasRow1"))
            compare(fake.calls, ["to 0", "out", "in 0"], "a file's row does nothing")
            const fill = findChild(findChild(screen, "atlasRow1"), "proportionFill")
            compare(fill.width, findChild(findChild(screen, "atlasRow1"), "proportionTrack").width)
            verify(!findChild(screen, "emptyFolder").visible)
            fake.isBusy = true
            verify(!findChild(screen, "atlasRow0").enabled, "no drilling in while busy")
        }

        function test_oneLevelHasNoUpButtonAndAnEmptyFolderSaysSo() {
            fake.screenState = "map"
            fake.crumbs = [{ title: "Home", isLast: true }]
            fake.canGoUp = false
            verify(!findChild(screen, "upButton").visible)
            verify(findChild(screen, "emptyFolder").visible)
        }
    }
}
