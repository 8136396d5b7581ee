import QtQuick
import Vigilo

// The one large button.
PlainButton {
    id: button

    required property string symbol
    required property color ground

    width: 248
    height: 46

    background: Rectangle {
        radius: 11
        color: button.ground
        border.width: Theme.edgeWidth
        border.color: Theme.outline

        Rectangle {
            anchors.fill: parent
            radius: parent.radius
            // The text stands out less on a brighter ground.
            color: Qt.rgba(0, 0, 0, button.down ? 0.22 : 0.1)
            visible: button.down || button.hovered
        }

        FocusRing {
            radius: 14
            visible: button.visualFocus
        }
    }

    contentItem: Item {
        Row {
            anchors.centerIn: parent
            spacing: Theme.textGap

            SymbolIcon {
                anchors.verticalCenter: parent.verticalCenter
                width: 13
                height: 13
                name: button.symbol
            }

            Label {
                anchors.verticalCenter: parent.verticalCenter
                text: button.text
                rounded: true
                font.weight: Font.DemiBold
            }
        }
    }
}
