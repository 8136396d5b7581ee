import QtQuick
import QtQuick.Window
import Vigilo
import Vigilo.Frame

// What the program is, which version, and where it comes from.
FocusScope {
    id: panel

    // Nothing changes here, so there is nothing to show but the program's own facts.
    required property QtObject model

    readonly property string homePage: "https://vigilo.github.io"

    implicitWidth: 300
    implicitHeight: column.height + 56
    focus: true
    Accessible.role: Accessible.Dialog
    Accessible.name: "About Vigilo"
    Keys.onEscapePressed: panel.Window.window.close()

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

        y: 28
        width: parent.width
        spacing: 8

        Image {
            anchors.horizontalCenter: parent.horizontalCenter
            width: 72
            height: 72
            visible: Screen.height >= 340
            sourceSize.width: 144
            sourceSize.height: 144
            source: "qrc:/vigilo/Vigilo.svg"
            Accessible.ignored: true
        }

        Label {
            anchors.horizontalCenter: parent.horizontalCenter
            text: "Vigilo"
            size: 20
            rounded: true
            font.weight: Font.DemiBold
            Accessible.ignored: false
            Accessible.role: Accessible.Heading
            Accessible.name: text
        }

        Label {
            anchors.horizontalCenter: parent.horizontalCenter
            text: "Version " + Qt.application.version
            color: Theme.secondary
            Accessible.ignored: false
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }

        Label {
            anchors.horizontalCenter: parent.horizontalCenter
            text: "Free software under the MIT licence"
            color: Theme.secondary
            Accessible.ignored: false
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }

        PlainButton {
            id: link

            anchors.horizontalCenter: parent.horizontalCenter
            horizontalPadding: 6
            verticalPadding: 3
            reach: 2
            text: panel.homePage
            Accessible.role: Accessible.Link
            onClicked: Qt.openUrlExternally(panel.homePage)

            background: Item {
                FocusRing {
                    radius: 6
                    visible: link.visualFocus
                }
            }

            contentItem: Label {
                text: link.text
                color: Theme.focus
                font.underline: link.hovered
            }
        }

        Item {
            width: 1
            height: 4
        }

        PanelButton {
            anchors.horizontalCenter: parent.horizontalCenter
            text: "Close"
            onClicked: panel.Window.window.close()
        }
    }
}
