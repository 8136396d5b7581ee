import QtQuick
import Vigilo

// Below a button of the window's frame: nothing to be seen until the pointer or the keyboard is on it.
Rectangle {
    id: ground

    required property ButtonArea button

    radius: 10
    color: Theme.white(ground.button.down ? 0.22 : ground.button.hovered ? 0.14 : 0)

    FocusRing {
        radius: 13
        visible: ground.button.visualFocus
    }
}
