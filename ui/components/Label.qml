import QtQuick
import Vigilo

// A line of text of the height that the layout counts with, whatever the font's own metrics.
Text {
    property bool rounded: false
    property int size: 13

    height: Math.round(size * 12) / 10
    verticalAlignment: Text.AlignVCenter
    color: Theme.primary
    font.family: rounded ? Fonts.roundedFamily : Fonts.systemFamily
    font.pixelSize: size
    textFormat: Text.PlainText
    elide: Text.ElideMiddle
    renderType: Text.QtRendering
    Accessible.ignored: true
}
