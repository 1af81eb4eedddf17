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
        property string search: ""
        property string screenState: "allClean"
        property ListModel apps: ListModel {}
        property ListModel leftovers: ListModel {}
        property int appCount: apps.count
        property int leftoverCount: leftovers.count
        property string removalMessage: "Its preferences, caches, and support files go to the Trash too; restorable with Restore."
        function record(call) { calls = calls.concat([call]) }
        function appear() { record("appear") }
        function loadApps() { record("load") }
        function sweepAllOrphans() { record("orphans") }
        function sweepOrphan(row) { record("orphan " + row) }
        function removalTitle(row) { return "Remove " + apps.get(row).name + " and everything it left behind?" }
        function uninstall(row) { record("uninstall " + row) }
    }

    UninstallScreen { id: screen; view: fake; anchors.fill: parent }

    TestCase {
        name: "Uninstall"
        when: windowShown

        function init() {
            fake.calls = []
            fake.isBusy = false
            fake.apps.clear()
            fake.leftovers.clear()
        }

        function test_emptyStates() {
            fake.screenState = "allClean"
            verify(findChild(screen, "allCleanState").visible)
            verify(!findChild(screen, "noMatchState").visible)
            fake.screenState = "noMatch"
            verify(findChild(screen, "noMatchState").visible)
            fake.screenState = "loading"
            verify(findChild(screen, "loadingState").visible)
        }

        function test_searchAndOrphans() {
            fake.screenState = "lists"
            fake.leftovers.append({ name: "Gone", path: "/h/.config/gone", sizeText: "4 KB", accessibleText: "Sweep Gone orphan" })
            waitForRendering(screen)
            verify(findChild(screen, "orphansSection").visible)
            verify(!findChild(screen, "installedSection").visible)
            compare(findChild(screen, "sweepOrphan0").Accessible.name, "Sweep Gone orphan")
            mouseClick(findChild(screen, "sweepAllOrphans"))
            mouseClick(findChild(screen, "sweepOrphan0"))
            mouseClick(findChild(screen, "refreshButton"))
            compare(fake.calls, ["orphans", "orphan 0", "load"])
            const field = findChild(screen, "searchField")
            mouseClick(field)
            keyClick(Qt.Key_G)
            compare(fake.search, "g")
            fake.search = ""
        }

        function test_removalAsksFirstAndProtectedAppsHaveNoButton() {
            fake.screenState = "lists"
            fake.apps.append({ name: "Editor", detail: "2.1 · 2 MB", iconSource: "", canRemove: true, accessibleText: "Editor" })
            fake.apps.append({ name: "Shell", detail: "", iconSource: "", canRemove: false, accessibleText: "Shell, System" })
            waitForRendering(screen)
            compare(findChild(screen, "installedSection").text, "Installed (2)")
            verify(!findChild(screen, "remove1").visible)
            mouseClick(findChild(screen, "remove0"))
            const dialog = findChild(screen, "removalDialog")
            tryCompare(dialog, "opened", true)
            compare(dialog.title, "Remove Editor and everything it left behind?")
            compare(fake.calls, [], "nothing goes before the answer")
            mouseClick(findChild(dialog.footer, "confirmRemoval"))
            compare(fake.calls, ["uninstall 0"])
            tryCompare(dialog, "visible", false)
            mouseClick(findChild(screen, "remove0"))
            tryCompare(dialog, "opened", true)
            mouseClick(findChild(dialog.footer, "cancelRemoval"))
            compare(fake.calls, ["uninstall 0"])
        }
    }
}
