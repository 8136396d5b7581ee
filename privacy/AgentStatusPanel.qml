import QtQuick
import Vigilo
import Vigilo.Privacy

// The agents on the lock screen. Rows beyond `maximumHeight` are scrolled to.
Rectangle {
    id: panel

    required property AgentLockViewModel model
    required property real maximumHeight

    // What stands above and below the rows.
    readonly property real frameHeight: 16 + header.height + 12 + 12 + footer.height + 16

    height: frameHeight + body.height
    radius: 18
    color: Theme.white(0.045)
    border.width: 1
    border.color: Theme.outlineOver(color)

    Label {
        id: header

        x: 16
        y: 16
        text: panel.model.header
        size: 10
        rounded: true
        font.weight: Font.Bold
        font.letterSpacing: 1.15
        color: Theme.secondary
        Accessible.ignored: false
        Accessible.role: Accessible.Heading
        Accessible.name: text
    }

    Label {
        anchors.right: parent.right
        anchors.rightMargin: 16
        anchors.verticalCenter: header.verticalCenter
        text: panel.model.remaining
        size: 11
        font.weight: Font.DemiBold
        color: Qt.rgba(0.55, 0.74, 1, 1)
        Accessible.ignored: false
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }

    Item {
        id: body

        anchors.top: header.bottom
        anchors.topMargin: 12
        x: 16
        width: parent.width - 32
        height: panel.model.hasAgents ? rows.height : empty.height

        Rectangle {
            id: empty

            width: parent.width
            height: 52
            radius: 13
            color: Qt.rgba(0, 0, 0, 0.18)
            border.width: Theme.edgeWidth
            border.color: Theme.outline
            visible: !panel.model.hasAgents
            Accessible.role: Accessible.StaticText
            Accessible.name: emptyTitle.text + ". " + emptyDetail.text

            SymbolIcon {
                x: 14
                anchors.verticalCenter: parent.verticalCenter
                width: 22
                height: 22
                name: "waveform.path.ecg"
                color: Theme.dim(0.45)
            }

            Column {
                x: 48
                anchors.verticalCenter: parent.verticalCenter
                spacing: 3

                Label {
                    id: emptyTitle

                    text: "Watching for Claude Code and Codex"
                    font.weight: Font.DemiBold
                }

                Label {
                    id: emptyDetail

                    text: "Your Mac remains awake even when no agent is detected."
                    size: 11
                    font.weight: Font.Medium
                    color: Theme.secondary
                }
            }
        }

        ListView {
            id: rows

            readonly property real allRowsHeight: count * 58 + Math.max(count - 1, 0) * spacing

            width: parent.width
            height: Math.min(allRowsHeight, Math.max(panel.maximumHeight - panel.frameHeight, 58))
            visible: panel.model.hasAgents
            model: panel.model.agents
            spacing: 8
            clip: interactive
            interactive: allRowsHeight > height
            boundsBehavior: Flickable.StopAtBounds
            Accessible.role: Accessible.List
            Accessible.name: header.text

            delegate: AgentRow {
                width: ListView.view.width
            }
        }
    }

    // How much there is to scroll to, and where in it one is.
    Rectangle {
        visible: rows.visible && rows.interactive
        anchors.right: parent.right
        anchors.rightMargin: 6
        y: body.y + rows.visibleArea.yPosition * body.height
        width: 3
        height: Math.max(rows.visibleArea.heightRatio * body.height, 12)
        radius: 1.5
        color: Theme.dim(0.25)
    }

    Label {
        id: footer

        anchors.top: body.bottom
        anchors.topMargin: 12
        x: 16
        width: parent.width - 32
        height: lineCount * size * 1.2
        wrapMode: Text.Wrap
        elide: Text.ElideNone
        text: "Local process signal only • Busy is a CPU hint • prompts are never read"
        size: 10
        font.weight: Font.Medium
        color: Theme.secondary
        Accessible.ignored: false
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }

    function scroll(rowsDown: int) {
        const end = Math.max(rows.allRowsHeight - rows.height, 0);
        rows.contentY = Math.min(Math.max(rows.contentY + rowsDown * 66, 0), end);
    }
}
