import QtQuick
import QtQuick.Window
import Vigilo
import Vigilo.Frame

// A warning that waits to be read.
FocusScope {
    id: panel

    required property AlertModel model

    // Very large text leaves little room on a display.
    implicitWidth: Math.min(400, Screen.width - 16)
    implicitHeight: column.height + 48
    focus: true
    Accessible.role: Accessible.AlertMessage
    Accessible.name: model.message
    Accessible.description: model.informativeText
    Keys.onEscapePressed: panel.model.dismissed()

    DragHandler {
        target: null
        onActiveChanged: {
            if (active) {
                panel.Window.window.startSystemMove();
            }
        }
    }

    WindowEdge {}

    Column {
        id: column

        x: 28
        y: 24
        width: parent.width - 56
        spacing: 12

        Text {
            width: parent.width
            text: panel.model.message
            color: Theme.primary
            font.family: Fonts.roundedFamily
            font.pixelSize: 15
            font.weight: Font.DemiBold
            wrapMode: Text.Wrap
            textFormat: Text.PlainText
            renderType: Text.QtRendering
            Accessible.role: Accessible.Heading
            Accessible.name: text
        }

        Text {
            width: parent.width
            height: Math.max(Math.min(implicitHeight, Screen.height - 180), 16)
            elide: Text.ElideRight
            text: panel.model.informativeText
            color: Theme.white(0.75)
            font.family: Fonts.systemFamily
            font.pixelSize: 13
            wrapMode: Text.Wrap
            textFormat: Text.PlainText
            renderType: Text.QtRendering
            visible: text !== ""
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }

        PanelButton {
            anchors.right: parent.right
            text: "OK"
            onClicked: panel.model.dismissed()
        }
    }
}
