import QtQuick
import Vigilo

// One agent on the lock screen: what it is, where it works, whether it is busy and for how long.
Rectangle {
    id: row

    required property string name
    required property string detail
    required property string symbol
    required property color tint
    required property string status
    required property bool isBusy
    required property string runtime

    height: 58
    radius: 13
    color: Qt.rgba(0, 0, 0, 0.18)
    border.width: Theme.edgeWidth
    border.color: Theme.outline
    Accessible.role: Accessible.ListItem
    Accessible.name: name + ", " + detail + ", " + status + ", " + runtime

    Rectangle {
        id: tile

        x: 14
        anchors.verticalCenter: parent.verticalCenter
        width: 38
        height: 38
        radius: 10
        color: Qt.rgba(row.tint.r, row.tint.g, row.tint.b, 0.16)

        SymbolIcon {
            anchors.centerIn: parent
            width: 19
            height: 19
            name: row.symbol
            color: row.tint
        }
    }

    Column {
        anchors.left: tile.right
        anchors.leftMargin: 12
        anchors.right: state.left
        anchors.rightMargin: 12
        anchors.verticalCenter: parent.verticalCenter
        spacing: 3

        Label {
            width: parent.width
            text: row.name
            font.weight: Font.DemiBold
        }

        Label {
            width: parent.width
            text: row.detail
            size: 11
            font.weight: Font.Medium
            color: Theme.secondary
        }
    }

    Column {
        id: state

        anchors.right: parent.right
        anchors.rightMargin: 14
        anchors.verticalCenter: parent.verticalCenter
        spacing: 3

        Row {
            anchors.right: parent.right
            spacing: 6

            Rectangle {
                anchors.verticalCenter: parent.verticalCenter
                width: 6
                height: 6
                radius: 3
                color: row.isBusy ? Theme.green : Theme.dim(0.38)
            }

            Label {
                text: row.status
                size: 10
                font.weight: Font.Bold
                font.letterSpacing: 0.8
            }
        }

        Label {
            anchors.right: parent.right
            text: row.runtime
            size: 10
            font.family: Fonts.monospacedFamily
            font.weight: Font.Medium
            color: Theme.tertiary
        }
    }
}
