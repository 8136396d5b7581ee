import QtQuick
import Vigilo

// Around a window, where grounds alone do not stand out enough.
Rectangle {
    anchors.fill: parent
    visible: Theme.isContrastHigh
    color: "transparent"
    border.width: Theme.edgeWidth
    border.color: Theme.outline
}
