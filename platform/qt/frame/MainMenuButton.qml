import QtQuick
import Vigilo
import Vigilo.Frame

// The button of the window's frame that opens the main menu.
MenuButtonArea {
    id: button

    width: 20
    height: 20
    reach: 2
    takesFocusByPointer: false
    Accessible.role: Accessible.ButtonMenu
    Accessible.name: "Main menu"

    background: WindowButtonGround {
        button: button
    }

    contentItem: WindowButtonSign {
        button: button
        sign: WindowButtonSign.Lines
    }
}
