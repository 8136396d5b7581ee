import QtQuick
import Vigilo

// The one button of a small window; it has the keyboard.
PlainButton {
    id: button

    width: 110
    height: 32
    focus: true

    background: Rectangle {
        radius: 9
        color: button.down ? Qt.darker(Theme.deepBlue, 1.2) : Theme.deepBlue
        border.width: Theme.edgeWidth
        border.color: Theme.outline

        FocusRing {
            radius: 12
            visible: button.visualFocus
        }
    }

    contentItem: Label {
        horizontalAlignment: Text.AlignHCenter
        text: button.text
        rounded: true
        font.weight: Font.DemiBold
    }
}
