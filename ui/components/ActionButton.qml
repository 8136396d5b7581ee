import QtQuick
import Vigilo
import QtQuick.Templates as T

// The one large button.
T.Button {
    id: button

    required property string symbol
    required property color ground

    width: 248
    height: 46
    focusPolicy: Qt.StrongFocus
    Accessible.name: text
    Keys.onReturnPressed: event => {
        if (!event.isAutoRepeat) {
            button.clicked();
        }
    }
    Keys.onEnterPressed: event => {
        if (!event.isAutoRepeat) {
            button.clicked();
        }
    }

    background: Rectangle {
        radius: 11
        color: button.ground

        Rectangle {
            anchors.fill: parent
            radius: parent.radius
            color: button.down ? Qt.rgba(0, 0, 0, 0.18) : Theme.white(0.08)
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
