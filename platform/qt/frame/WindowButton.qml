import QtQuick
import Vigilo

// A small round button of the window's frame: quiet until the pointer or the keyboard is on it.
PlainButton {
    id: button

    enum Sign {
        Lines,
        Line,
        Cross
    }

    required property int sign

    width: 20
    height: 20
    reach: 2
    takesFocusByPointer: false

    background: Rectangle {
        radius: 10
        color: Theme.white(button.down ? 0.22 : button.hovered ? 0.14 : 0)

        FocusRing {
            radius: 13
            visible: button.visualFocus
        }
    }

    contentItem: Item {
        opacity: button.hovered || button.visualFocus ? 0.95 : Theme.dim(0.4).a

        Repeater {
            model: button.sign === WindowButton.Lines ? [-3.5, 0, 3.5] : button.sign === WindowButton.Line ? [0] : []

            Rectangle {
                required property real modelData

                anchors.centerIn: parent
                anchors.verticalCenterOffset: modelData
                width: 10
                height: 1.3
                antialiasing: true
            }
        }

        Repeater {
            model: button.sign === WindowButton.Cross ? [45, -45] : []

            Rectangle {
                required property real modelData

                anchors.centerIn: parent
                width: 11
                height: 1.3
                rotation: modelData
                antialiasing: true
            }
        }
    }
}
