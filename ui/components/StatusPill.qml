import QtQuick
import Vigilo

// Says at a glance whether the machine is kept awake.
Capsule {
    id: pill

    required property bool active
    required property string text

    implicitWidth: row.width + 24
    implicitHeight: row.height + 16
    color: Theme.white(0.055)
    Accessible.role: Accessible.StaticText
    Accessible.name: text

    Row {
        id: row

        anchors.centerIn: parent
        spacing: 7

        Item {
            anchors.verticalCenter: parent.verticalCenter
            width: 7
            height: 7

            GlowField {
                anchors.centerIn: parent
                width: 48
                height: 48
                visible: pill.active

                Glow {
                    color: Qt.rgba(48 / 255, 209 / 255, 88 / 255, 0.8)
                    diameter: 7
                    blur: 5
                }
            }

            Rectangle {
                anchors.fill: parent
                radius: width / 2
                color: pill.active ? Theme.green : Theme.dim(0.3)
            }
        }

        Label {
            anchors.verticalCenter: parent.verticalCenter
            text: pill.text
            size: 10
            rounded: true
            font.weight: Font.Bold
            font.letterSpacing: 1.1
        }
    }
}
