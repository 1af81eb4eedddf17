import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Kestrow.Gui

// The main window: the sidebar on the left, the city stage and the selected screen on the right.
ApplicationWindow {
    id: window
    required property var appState
    required property var settings
    required property var pulseView
    required property var sweepView
    required property var atlasView
    required property var uninstallView
    required property var tuneUpView
    required property var cityView
    required property var centerer
    required property var tray
    required property var settingsView

    readonly property var tabIds: ["Pulse", "Sweep", "Atlas", "Uninstall", "Tune-Up"]

    title: "Kestrow"
    width: 1280
    height: 800
    minimumWidth: 1024
    minimumHeight: 700
    visible: true
    color: Theme.window

    Binding {
        target: Theme
        property: "dark"
        value: window.settings.appThemeRaw === "dark" || (window.settings.appThemeRaw !== "light" && Theme.systemIsDark)
    }

    Shortcut {
        sequence: "Ctrl+Alt+C"
        context: Qt.ApplicationShortcut
        onActivated: window.centerer.centerActiveWindow(true)
    }
    Shortcut {
        sequences: [StandardKey.Preferences, "Ctrl+,"]
        context: Qt.ApplicationShortcut
        onActivated: window.appState.showingSettingsSheet = true
    }

    RowLayout {
        anchors.fill: parent
        spacing: 0

        Sidebar {
            view: window.pulseView
            Layout.fillHeight: true
            Layout.preferredWidth: 290
        }

        ColumnLayout {
            Layout.fillWidth: true
            Layout.fillHeight: true
            Layout.margins: 20
            spacing: 16

            CityStage {
                view: window.cityView
                Layout.fillWidth: true
            }

            StackLayout {
                Layout.fillWidth: true
                Layout.fillHeight: true
                currentIndex: Math.max(0, window.tabIds.indexOf(window.pulseView.selectedTab))

                PulseScreen { view: window.pulseView }
                SweepScreen { view: window.sweepView }
                AtlasScreen { view: window.atlasView; shown: window.pulseView.selectedTab === "Atlas" }
                UninstallScreen { view: window.uninstallView; shown: window.pulseView.selectedTab === "Uninstall" }
                TuneUpScreen { view: window.tuneUpView; shown: window.pulseView.selectedTab === "Tune-Up" }
            }
        }
    }

    SettingsSheet {
        view: window.settingsView
        width: Math.min(860, window.width - 80)
        height: window.height - 80
        x: (window.width - width) / 2
        y: 40
        visible: window.appState.showingSettingsSheet
    }
}
