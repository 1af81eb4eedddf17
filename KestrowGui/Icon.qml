import QtQuick
import QtQuick.Controls.impl
import Kestrow.Gui

// A symbol of the icon table, tinted.
IconImage {
    property string symbol
    property int size: 16
    source: Icons.source(symbol)
    sourceSize: Qt.size(size, size)
    width: size
    height: size
    color: Theme.ink
}
