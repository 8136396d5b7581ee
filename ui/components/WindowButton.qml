import QtQuick
import Vigilo

// A small round button of the window's frame: quiet until the pointer or the keyboard is on it.
PlainButton {
    id: button

    property bool crossed: false

    width: 20
    height: 20
    focusPolicy: Qt.TabFocus

    background: Rectangle {
        radius: 10
        color: Theme.white(button.down ? 0.22 : button.hovered ? 0.14 : 0)

        FocusRing {
            radius: 13
            visible: button.visualFocus
        }
    }

    contentItem: Item {
        opacity: button.hovered || button.visualFocus ? 0.95 : 0.4

        Rectangle {
            anchors.centerIn: parent
            width: button.crossed ? 11 : 9
            height: 1.3
            rotation: button.crossed ? 45 : 0
            antialiasing: true
        }

        Rectangle {
            anchors.centerIn: parent
            width: 11
            height: 1.3
            rotation: -45
            antialiasing: true
            visible: button.crossed
        }
    }
}
