import QtQuick
import QtQuick.Templates as T
import Vigilo
import Vigilo.Frame

// A menu over the window's content, below the buttons of the window's frame.
T.Popup {
    id: popup

    required property WindowFrame frame

    parent: frame
    x: parent.width - width - 8
    y: 30
    padding: 6
    margins: 8
    focus: true
    implicitWidth: implicitContentWidth + 12
    implicitHeight: implicitContentHeight + 12
    closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutside
    onAboutToShow: popup.frame.mainMenu.prepare()

    Connections {
        target: popup.frame

        function onMenuWanted() {
            popup.open();
        }
    }

    background: Rectangle {
        radius: 12
        color: Theme.menuGround
        border.width: 1
        border.color: Theme.white(0.12)
    }

    contentItem: MenuList {
        menu: popup.frame.mainMenu
        title: "Vigilo"
        focus: true
        onDismissed: popup.close()
    }
}
