import QtQuick
import Vigilo

// Shows which control the keyboard acts on.
Rectangle {
    anchors.fill: parent
    anchors.margins: -3
    color: "transparent"
    border.width: 2
    border.color: Theme.focus
}
