import QtQuick
import QtTest
import Kestrow.Gui

Item {
    width: 1000
    height: 800

    QtObject {
        id: fake
        property var calls: []
        property bool isBusy: false
        property var cards: [{ id: "dns", section: "DNS cache", title: "Flush DNS cache", detail: "Clears the system resolver cache.",
                               icon: "network", accessibleText: "Flush DNS cache", running: false }]
        property bool canRun: true
        property string statusRow: ""
        property bool taskDidFail: false
        property string startupState: "loading"
        property int itemCount: items.count
        property string emptyDetail: "Your computer starts without extra agents."
        property ListModel items: ListModel {}
        function record(call) { calls = calls.concat([call]) }
        function appear() { record("appear") }
        function refresh() { record("refresh") }
        function run(id) { record("run " + id) }
        function toggle(row, enable) { record("toggle " + row + " " + enable) }
    }

    TuneUpScreen { id: screen; view: fake; anchors.fill: parent }

    TestCase {
        name: "TuneUp"
        when: windowShown

        function init() {
            fake.calls = []
            fake.canRun = true
            fake.items.clear()
        }

        function test_cardsRunOneAtATimeAndTellTheirStatus() {
            mouseClick(findChild(screen, "run_dns"))
            compare(fake.calls, ["run dns"])
            fake.canRun = false
            mouseClick(findChild(screen, "run_dns"))
            compare(fake.calls, ["run dns"])
            fake.statusRow = "Status: Could not run Flush DNS cache: refused"
            fake.taskDidFail = true
            const status = findChild(screen, "taskStatus")
            verify(status.visible)
            compare(status.color, Theme.dangerRed)
        }

        function test_startupStatesAndSwitches() {
            fake.startupState = "loading"
            verify(findChild(screen, "startupLoading").visible)
            fake.startupState = "empty"
            verify(findChild(screen, "startupEmpty").visible)
            fake.startupState = "rows"
            fake.items.append({ name: "agent", path: "/h/.config/autostart/agent.desktop", typeText: "Login Item",
                                impactText: "LOW", switchOn: true, accessibleText: "agent, Login Item, LOW impact, enabled" })
            waitForRendering(screen)
            compare(findChild(screen, "startupTitle").text, "Startup items (1)")
            mouseClick(findChild(screen, "switch0"))
            mouseClick(findChild(screen, "refreshButton"))
            compare(fake.calls, ["toggle 0 false", "refresh"])
        }
    }
}
