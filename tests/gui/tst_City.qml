import QtQuick
import QtTest
import Kestrow.Gui

// The city stage in 3D over a scripted run: idle, a one-second scan, a Sweep and its victory.
Item {
    id: root
    width: 940
    height: 380

    CityModelView { id: city }
    CityStage {
        id: stage
        view: city
        anchors.fill: parent
    }
    CityPreview { id: preview; y: 240; width: 300; height: 130; style: "freightTerminal" }
    SignalSpy { id: busyReports; target: city.controller; signalName: "activityChanged" }
    SignalSpy { id: selections; target: city; signalName: "districtSelected" }
    SignalSpy { id: modeChanges; target: city.controller; signalName: "modeChanged" }

    TestCase {
        name: "City"
        when: windowShown

        readonly property int idle: 0
        readonly property int scanning: 1
        readonly property int cleaning: 2
        readonly property int victory: 3

        function chip(id) {
            const found = findChild(stage, "chip" + id)
            verify(found, "chip " + id)
            return found
        }
        // The point of the stage where a chip stands: the middle of its lower edge.
        function foot(id) {
            const c = chip(id)
            return Qt.point(c.x + c.width / 2, c.y + c.height)
        }
        function firstArguments(spy) {
            const list = []
            for (let i = 0; i < spy.count; ++i)
                list.push(spy.signalArguments[i][0])
            return list
        }
        function reports() {
            return firstArguments(busyReports)
        }

        function test_1_idleCityHoldsItsChipsOverTheDistricts() {
            tryCompare(city.controller, "busy", false)
            compare(city.controller.mode, idle)
            compare(city.chips.length, 5)
            for (const data of city.chips) {
                const c = chip(data.id)
                verify(c.visible)
                verify(c.x >= 0 && c.x + c.width <= stage.width, "chip " + data.id + " inside the stage")
                verify(c.y >= 0 && c.y + c.height <= stage.height)
                const anchor = stage.viewport.mapFrom3DScene(stage.scene.anchorFor(data.id).scenePosition)
                if (c.y > 6)
                    fuzzyCompare(foot(data.id).y, anchor.y, 1)
                fuzzyCompare(foot(data.id).x, anchor.x, 1)
            }
            // At rest the camera faces the city's front: the districts keep their places from
            // left to right and from back to front.
            verify(foot(1).x < foot(2).x && foot(2).x < foot(4).x)
            verify(foot(5).x < foot(4).x)
            verify(foot(4).y > foot(2).y)

            // A drag turns the camera, and the chips follow their districts.
            const before = foot(4)
            mouseDrag(stage, 400, 200, 160, 0)
            tryVerify(() => Math.abs(foot(4).x - before.x) > 10)
            mouseDoubleClickSequence(stage, 300, 200)
            tryVerify(() => Math.abs(foot(4).x - before.x) < 1, 3000)
        }

        function test_2_chipsAndDistrictsOpenTheirScreens() {
            selections.clear()
            mouseClick(chip(2))
            mouseClick(chip(5))
            compare(selections.count, 2)
            compare(selections.signalArguments[0][0], 2)
            compare(selections.signalArguments[1][0], 5)
            // Below the applications' chip stands their tower.
            const tower = foot(2)
            mouseClick(stage, tower.x, tower.y + 30)
            compare(selections.count, 3)
            compare(selections.signalArguments[2][0], 2)
            mouseMove(stage, 5, 5)
            mouseMove(stage, tower.x, tower.y + 32)
            tryCompare(stage, "hoveredDistrict", 2)
        }

        function test_3_aOneSecondScanStaysOnStageForItsHolds() {
            busyReports.clear()
            city.showActivity({ isScanning: true, isDiskScanning: true })
            compare(city.controller.mode, scanning)
            verify(city.controller.radarBeamVisible)
            tryCompare(city.controller, "busy", true, 1000)
            wait(1000)
            city.showActivity({})
            // The scan's own hold keeps the beam turning for five seconds in all.
            wait(2500)
            compare(city.controller.mode, scanning)
            tryCompare(city.controller, "mode", idle, 3000)
            // The disk's longer hold, the fading beam and the sweeper's walk off still hold the
            // application back, and the end is reported once.
            verify(city.controller.busy)
            tryCompare(city.controller, "busy", false, 6000)
            compare(reports(), [true, false])
            verify(!city.controller.radarBeamVisible)
        }

        function test_4_aSweepPlaysTheHaulerThenCelebrates() {
            busyReports.clear()
            modeChanges.clear()
            city.showActivity({ isCleaning: true })
            compare(city.controller.mode, cleaning)
            tryVerify(() => stage.frame.haulerPhase === 3, 4000, "the hauler carries a crate")
            verify(stage.frame.cratesTaken[0])
            city.showActivity({ hasCleaned: true })
            // The trip under way finishes before the city celebrates.
            compare(city.controller.mode, cleaning)
            // Victory is entered straight from the act, and its celebration outlasts it.
            tryVerify(() => stage.frame.celebrating, 5000)
            compare(firstArguments(modeChanges).slice(0, 2), [cleaning, victory])
            tryCompare(city.controller, "busy", false, 4000)
            compare(reports(), [true, false])
        }

        function test_5_reducedMotionFreezesTheLoopsAndSkipsTheAct() {
            city.reduceMotion = true
            modeChanges.clear()
            const frozen = stage.frame.loopTime
            city.showActivity({ hasCleaned: true, isCleaning: true })
            compare(city.controller.mode, cleaning)
            wait(300)
            compare(stage.frame.loopTime, frozen)
            compare(stage.frame.haulerPhase, 0)
            city.showActivity({ hasCleaned: true })
            tryVerify(() => modeChanges.count >= 2, 1000)
            compare(firstArguments(modeChanges).slice(0, 2), [cleaning, victory])
            city.reduceMotion = false
        }

        function test_6_theFreightTerminalNeverHoldsTheApplicationBack() {
            tryCompare(city.controller, "busy", false, 4000)
            busyReports.clear()
            city.style = "freightTerminal"
            for (const data of city.chips)
                verify(stage.scene.anchorFor(data.id) !== null)
            city.showActivity({ systemScale: 0.55 })
            wait(900)
            const yardChip = foot(1).y
            city.showActivity({ isScanning: true, isDiskScanning: true, systemScale: 1.0 })
            wait(400)
            city.showActivity({ isCleaning: true })
            wait(400)
            city.showActivity({ hasCleaned: true })
            wait(200)
            compare(busyReports.count, 0)
            verify(!city.controller.busy)
            // The taller yard carries its chip up with it.
            verify(foot(1).y < yardChip - 10)
            city.style = "classicCity"
        }

        function test_7_theLineupOpensAnInspectorThatPlaysEmotes() {
            const button = findChild(stage, "lineupButton")
            mouseClick(button)
            verify(stage.lineupOpen)
            verify(!chip(1).visible)
            compare(city.agents.length, 5)
            const hauler = findChild(stage, "agent_hauler_bot")
            verify(hauler)
            tryVerify(() => hauler.visible && hauler.y > 0)
            mouseClick(hauler)
            compare(stage.selectedAgent, "hauler_bot")
            const inspector = findChild(stage, "agentInspector")
            verify(inspector.visible)
            // The status line follows what runs: a Sweep outranks a scan.
            const status = findChild(inspector, "agentStatus")
            city.showActivity({ isScanning: true })
            compare(status.text, city.agents[3].status)
            const scanStatus = status.text
            city.showActivity({ isScanning: true, isCleaning: true })
            verify(status.text !== scanStatus)
            city.showActivity({})
            const figure = stage.scene.agentLineup.tagFor(3).parent.figure
            mouseClick(findChild(inspector, "emoteButton"))
            tryVerify(() => figure.emoteProgress > 0, 1000)
            tryCompare(figure, "emoteProgress", 0, 3000)
            // In the freight style the lineup holds its two rovers.
            city.style = "freightTerminal"
            compare(city.agents.length, 2)
            city.style = "classicCity"
            mouseClick(button)
            verify(!stage.lineupOpen && !inspector.visible)
            tryVerify(() => chip(1).visible)
        }

        function test_8_aPreviewShowsItsOwnStyleAndLook() {
            compare(preview.Accessible.name, "Preview of Modular Freight Terminal")
            const wasDark = preview.dark
            mouseClick(preview, preview.width - 17, 17)
            compare(preview.dark, true)
            mouseClick(preview, preview.width - 43, 17)
            compare(preview.dark, false)
            preview.dark = wasDark
            // The preview keeps its style whatever the stage shows.
            city.style = "classicCity"
            compare(preview.Accessible.name, "Preview of Modular Freight Terminal")
        }
    }
}
