import QtQuick
import Vigilo
import Vigilo.Frame

// The sign on a button of the window's frame: quiet until the pointer or the keyboard is on it.
Item {
    id: content

    enum Sign {
        Lines,
        Line,
        Cross
    }

    required property ButtonArea button
    required property int sign

    opacity: content.button.hovered || content.button.visualFocus ? 0.95 : Theme.dim(0.4).a

    Repeater {
        model: content.sign === WindowButtonSign.Lines ? [-3.5, 0, 3.5] : content.sign === WindowButtonSign.Line ? [0] : []

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
        model: content.sign === WindowButtonSign.Cross ? [45, -45] : []

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
