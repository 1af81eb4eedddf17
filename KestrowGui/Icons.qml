pragma Singleton
import QtQuick

// The one table from the symbol names the screens use to the icons shipped with the application.
QtObject {
    readonly property var table: ({
        "waveform.path.ecg": "computer",
        "paintbrush.pointed": "edit-clear-all",
        "paintbrush.pointed.fill": "edit-clear-all",
        "map": "find-location",
        "shippingbox": "package-x-generic",
        "shippingbox.fill": "package-x-generic",
        "slider.horizontal.3": "preferences-system",
        "magnifyingglass": "edit-find",
        "cpu": "applications-engineering",
        "externaldrive.badge.xmark": "drive-harddisk",
        "hammer.fill": "emblem-system",
        "folder.badge.gearshape": "folder-open",
        "archivebox": "media-removable",
        "doc": "text-x-generic",
        "doc.fill": "text-x-generic",
        "folder": "folder",
        "folder.fill": "folder",
        "folder.badge.minus": "folder",
        "chevron.up": "go-up",
        "trash": "user-trash",
        "app.dashed": "application-x-executable",
        "ghost": "avatar-default",
        "network": "network-wired",
        "internaldrive": "drive-harddisk",
        "arrow.clockwise": "view-refresh",
        "gearshape": "emblem-system",
        "sun.max.fill": "weather-clear",
        "moon.fill": "weather-clear-night",
        "laptopcomputer": "computer",
        "bolt.fill": "battery-full-charging",
        "battery.100.bolt": "battery-full-charging",
        "battery.100": "battery-full",
        "checkmark.shield.fill": "security-high",
        "lock.shield": "changes-prevent",
        "checkmark.seal": "emblem-ok",
        "checkmark": "object-select",
        "plus": "list-add",
        "xmark.circle.fill": "window-close",
        "doc.on.doc": "edit-copy",
        "exclamationmark.triangle": "dialog-warning",
        "building.2.crop.circle": "view-app-grid",
        "circle.righthalf.filled": "preferences-system-details"
    })

    function source(name) {
        return "qrc:/Kestrow/Gui/icons/" + (table[name] || "text-x-generic") + "-symbolic.svg"
    }
}
