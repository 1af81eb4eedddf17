import QtQuick
import QtQuick.Layouts
import Kestrow.Gui

// A headline and a detail where a list would stand, with an optional button.
Panel {
    id: empty
    property string headline
    property string detail
    property string buttonTitle
    property bool buttonEnabled: true
    signal pressed

    Accessible.name: headline
    Text {
        text: empty.headline
        font.pixelSize: 17
        font.weight: Font.DemiBold
        color: Theme.ink
        Layout.fillWidth: true
        wrapMode: Text.WordWrap
    }
    Text {
        text: empty.detail
        font.pixelSize: 13
        color: Theme.inkSecondary
        Layout.fillWidth: true
        wrapMode: Text.WordWrap
    }
    KButton {
        objectName: "emptyButton"
        visible: empty.buttonTitle !== ""
        text: empty.buttonTitle
        enabled: empty.buttonEnabled
        prominent: true
        onClicked: empty.pressed()
    }
}
