import QtQuick
import Vigilo

// A quiet ground with round ends and a hairline around it.
Rectangle {
    radius: height / 2
    color: Theme.white(0.045)
    border.width: 1
    border.color: Theme.outlineOver(color)
}
