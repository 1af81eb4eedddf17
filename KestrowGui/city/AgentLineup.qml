import QtQuick
import QtQuick3D
import Kestrow.Gui

// The agent lineup: the style's robots side by side on a plinth, each on its own pedestal,
// ready to play its emote.
Node {
    id: lineup
    property var agents: []
    property string selectedAgent: ""
    property bool dark: false
    property real loopTime: 0

    readonly property real spacing: 165
    readonly property var looks: ({
        patrol_bot: { kind: "patrol", body: "#e8e6df", accent: "#4a6fa5" },
        sweeper_bot: { kind: "sweeper", body: "#7cc7b3", accent: "#2f8f7a" },
        dev_worker: { kind: "dev", body: "#e4ecea", accent: "#3bb3a2" },
        hauler_bot: { kind: "hauler", body: "#f0c24a", accent: "#3a3a3a" },
        engineer_bot: { kind: "engineer", body: "#f2c14e", accent: "#d9902a" },
        amr_inspector: { kind: "amr", body: "#e8e6df", accent: "#e07a4a" },
        amr_hauler: { kind: "amr", body: "#7cc7b3", accent: "#2f8f7a" }
    })

    function slot(index) {
        return (index - (lineup.agents.length - 1) / 2) * lineup.spacing
    }
    // The node above an agent's head, where its name tag stands.
    function tagFor(index) {
        const figure = figures.objectAt(index)
        return figure ? figure.tag : null
    }
    function emote(id) {
        for (let i = 0; i < figures.count; ++i)
            if (lineup.agents[i].id === id)
                figures.objectAt(i).figure.emote()
    }

    Block {
        base: Qt.vector3d(0, -30, 0)
        size: Qt.vector3d(Math.max(1, lineup.agents.length) * lineup.spacing + 60, 30, 150)
        color: lineup.dark ? "#2d2f36" : "#cfc6b6"
    }
    Repeater3D {
        id: figures
        model: lineup.agents
        delegate: Node {
            id: stand
            required property var modelData
            required property int index
            readonly property var look: lineup.looks[modelData.id] || lineup.looks.patrol_bot
            readonly property alias figure: figure
            readonly property alias tag: tag
            readonly property bool selected: lineup.selectedAgent === modelData.id
            x: lineup.slot(index)

            Block {
                shape: "#Cylinder"
                size: Qt.vector3d(80, 10, 80)
                color: Theme.color(stand.modelData.tintName)
                glow: stand.selected ? Qt.vector3d(0.5, 0.3, 0.1) : Qt.vector3d(0.05, 0.03, 0.01)
                agent: stand.modelData.id
            }
            RobotFigure {
                id: figure
                y: 10
                scale: Qt.vector3d(2.4, 2.4, 2.4)
                kind: stand.look.kind
                agent: stand.modelData.id
                bodyColor: stand.look.body
                accent: stand.look.accent
                loopTime: lineup.loopTime
                eulerRotation.y: stand.selected ? Math.sin(lineup.loopTime * 1.5) * 20 : 0
            }
            // Tags of neighbours stand at two heights, so that they never cover each other.
            Node {
                id: tag
                y: 150 + (stand.index % 2) * 34
            }
        }
    }
}
