import QtQuick
import QtQuick.Controls
import Kestrow.Gui

// The capacity bar: solid slices, Other striped, Free hatched, each with its tool tip.
Item {
    id: track
    property var view
    readonly property var segments: view ? view.segments : []
    readonly property var widths: view ? (segments, view.trackWidths(width)) : []

    implicitHeight: 14
    Accessible.role: Accessible.Graphic
    Accessible.name: segments.map(segment => segment.tooltip).join(", ")

    Row {
        spacing: 3
        Repeater {
            model: track.segments
            delegate: Rectangle {
                required property var modelData
                required property int index
                width: track.widths[index] || 0
                height: track.height
                radius: 3
                clip: true
                color: modelData.fill === "hatched" ? Theme.puttyWell
                       : modelData.fill === "striped" ? Qt.rgba(Theme.color(modelData.colorName).r,
                                                                Theme.color(modelData.colorName).g,
                                                                Theme.color(modelData.colorName).b, 0.45)
                       : Theme.color(modelData.colorName)
                Canvas {
                    anchors.fill: parent
                    visible: parent.modelData.fill !== "solid"
                    property color lineColor: parent.modelData.fill === "striped" ? Theme.color(parent.modelData.colorName)
                                                                                  : Theme.inkTertiary
                    onLineColorChanged: requestPaint()
                    onWidthChanged: requestPaint()
                    onPaint: {
                        const context = getContext("2d")
                        context.clearRect(0, 0, width, height)
                        context.strokeStyle = lineColor
                        context.globalAlpha = parent.modelData.fill === "striped" ? 0.9 : 0.4
                        context.lineWidth = parent.modelData.fill === "striped" ? 2.5 : 1
                        const step = parent.modelData.fill === "striped" ? 6 : 4
                        context.beginPath()
                        for (let x = -height; x < width + height; x += step) {
                            context.moveTo(x, height)
                            context.lineTo(x + height, 0)
                        }
                        context.stroke()
                    }
                }
                HoverHandler {
                    id: hover
                }
                ToolTip.visible: hover.hovered
                ToolTip.text: modelData.tooltip
            }
        }
    }
}
