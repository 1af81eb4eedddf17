import QtQuick
import Kestrow.Gui

// A row of cells, the first `lit` of them in colour.
Row {
    property int cells: 20
    property int lit: 0
    property color tint: Theme.safeTeal
    property int cellWidth: 6

    spacing: 2
    Repeater {
        model: cells
        delegate: Rectangle {
            required property int index
            width: cellWidth
            height: 12
            radius: 1.5
            color: index < lit ? tint : Theme.puttyWell
        }
    }
}
