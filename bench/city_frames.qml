import QtQuick
import QtTest
import Kestrow.Gui

// The city stage where the main window holds it at 1280x800, playing a scan (beam, robots and
// loops all moving) for a while: frames per second as the window swaps them, and the 3D
// renderer's own time per frame. One test function per light setup, run one per process.
Item {
    id: window
    width: 1280
    height: 800

    Rectangle { width: 290; height: parent.height; color: Theme.sidebar }
    CityModelView { id: city }
    CityStage {
        id: stage
        view: city
        x: 310
        y: 20
        width: 950
        height: 240
    }
    Text { x: 310; y: 280; text: "Pulse"; font.pixelSize: 28; color: Theme.ink }

    TestCase {
        name: "CityFrames"
        when: windowShown

        readonly property int seconds: 10

        function measure(shadows) {
            stage.shadows = shadows
            city.showActivity({ isScanning: true, isDiskScanning: true, isAnalyzingSystem: true })
            wait(2000)
            let frames = 0
            const count = () => ++frames
            window.Window.window.frameSwapped.connect(count)
            let frameTimes = 0
            let worst = 0
            for (let second = 0; second < seconds; ++second) {
                wait(1000)
                frameTimes += stage.viewport.renderStats.frameTime
                worst = Math.max(worst, stage.viewport.renderStats.maxFrameTime)
                // Keep the scan on stage for the whole measurement.
                city.showActivity({})
                city.showActivity({ isScanning: true, isDiskScanning: true, isAnalyzingSystem: true })
            }
            window.Window.window.frameSwapped.disconnect(count)
            console.log("FRAMES shadows=" + shadows + " fps=" + (frames / seconds).toFixed(1) + " frameTimeMs="
                        + (frameTimes / seconds).toFixed(2) + " worstFrameTimeMs=" + worst.toFixed(2))
        }

        function test_withShadows() {
            measure(true)
        }
        function test_withoutShadows() {
            measure(false)
        }
    }
}
