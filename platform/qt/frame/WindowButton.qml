import QtQuick
import Vigilo
import Vigilo.Frame

// A small round button of the window's frame.
PlainButton {
    id: button

    required property int sign

    width: 20
    height: 20
    reach: 2
    takesFocusByPointer: false

    background: WindowButtonGround {
        button: button
    }

    contentItem: WindowButtonSign {
        button: button
        sign: button.sign
    }
}
