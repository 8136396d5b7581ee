import QtQuick
import QtQuick.Window
import Vigilo
import Vigilo.Frame

// A menu in a window of its own, for the status item.
Rectangle {
    id: panel

    required property MenuModel model

    implicitWidth: list.implicitWidth + 12
    implicitHeight: list.implicitHeight + 12
    color: Theme.menuGround
    border.width: 1
    border.color: Theme.menuOutline

    MenuList {
        id: list

        anchors.fill: parent
        anchors.margins: 6
        menu: panel.model
        title: "Vigilo"
        focus: true
        onDismissed: panel.Window.window.close()
    }

    Connections {
        target: panel.Window.window

        function onVisibleChanged() {
            list.begin();
        }
    }
}
