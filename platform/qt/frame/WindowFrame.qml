pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Window
import Vigilo.Frame

// What a window has of its desktop when it has no frame of the system's: the main menu with its key
// equivalents, and the buttons to minimise and to close.
Item {
    id: frame

    required property MenuModel mainMenu

    // Whether the main menu is on the screen; the menu itself says so.
    property bool isMenuOpen: false

    signal menuWanted

    // The menu is made when it is first wanted, and hears of its opening as of any later one.
    function openMenu() {
        if (menuLoader.status === Loader.Null) {
            menuLoader.setSource("MenuPopup.qml", {
                frame: frame
            });
        }
        frame.menuWanted();
    }

    anchors.fill: parent

    WindowEdge {}

    Repeater {
        model: frame.mainMenu

        Item {
            id: line

            required property int index
            required property string keys
            required property bool isSelectable

            Shortcut {
                sequence: line.keys
                enabled: line.isSelectable && line.keys !== ""
                onActivated: frame.mainMenu.trigger(line.index)
            }
        }
    }

    Shortcut {
        sequences: ["F10", "Shift+F10", "Menu"]
        onActivated: frame.openMenu()
    }

    Row {
        anchors.right: parent.right
        anchors.top: parent.top
        anchors.margins: 6
        // The buttons reach to the middle of the space between them.
        spacing: 4

        MainMenuButton {
            isOpen: frame.isMenuOpen
            onClicked: frame.openMenu()
        }

        WindowButton {
            text: "Minimise"
            sign: WindowButtonSign.Line
            onClicked: frame.Window.window.showMinimized()
        }

        WindowButton {
            text: "Close"
            sign: WindowButtonSign.Cross
            onClicked: frame.Window.window.close()
        }
    }

    Loader {
        id: menuLoader
    }
}
