import QtQuick
import QtQuick3D
import Kestrow.Gui

// A small live preview of one style of the city over a fixed model, without interaction, in the
// light or the dark look of its own toggle.
Rectangle {
    id: preview
    property string style: "classicCity"
    property bool dark: Theme.dark

    implicitWidth: 300
    implicitHeight: 130
    radius: 10
    clip: true
    color: dark ? "#1b1d24" : "#e7e2d8"
    Accessible.role: Accessible.Graphic
    Accessible.name: "Preview of " + city.styleName

    CityModelView {
        id: city
        style: preview.style
    }
    CityFrame {
        id: frame
        controller: city.controller
    }
    View3D {
        anchors.fill: parent
        camera: scene.camera
        environment: scene.environment
        CityScene {
            id: scene
            controller: city.controller
            frame: frame
            style: city.style
            dark: preview.dark
            shadows: false
            cameraDistance: 1400 * Math.max(1, 2.2 * preview.height / preview.width)
        }
    }

    Row {
        anchors.right: parent.right
        anchors.top: parent.top
        anchors.margins: 6
        spacing: 4
        Repeater {
            model: [{ dark: false, symbol: "sun.max.fill", label: "Light" }, { dark: true, symbol: "moon.fill", label: "Dark" }]
            delegate: Rectangle {
                id: toggle
                required property var modelData
                readonly property bool chosen: preview.dark === modelData.dark
                width: 22
                height: 22
                radius: 11
                color: chosen ? Theme.accentOrange : Theme.panel
                border.width: 1
                border.color: Theme.hairline
                Accessible.role: Accessible.RadioButton
                Accessible.name: modelData.label
                Accessible.checked: chosen
                Accessible.onPressAction: preview.dark = modelData.dark
                Icon {
                    anchors.centerIn: parent
                    symbol: toggle.modelData.symbol
                    size: 12
                    color: toggle.chosen ? "white" : Theme.ink
                }
                TapHandler {
                    onTapped: preview.dark = toggle.modelData.dark
                }
            }
        }
    }
}
