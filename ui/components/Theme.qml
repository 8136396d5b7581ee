pragma Singleton

import QtQml
import QtQuick
import Vigilo

// Colours and distances of every screen, for the dark scheme.
QtObject {
    readonly property bool isContrastHigh: Wishes.isContrastHigh

    readonly property color blue: "#0A84FF"
    // Small white text stands out on this one, not on the other.
    readonly property color deepBlue: isContrastHigh ? "#0A54AE" : "#0A6FE0"
    readonly property color action: isContrastHigh ? deepBlue : blue
    readonly property color purple: "#BF5AF2"
    readonly property color green: "#30D158"
    readonly property color orange: "#FF9F0A"

    readonly property color primary: "white"
    readonly property color secondary: white(isContrastHigh ? 0.85 : 0.55)
    readonly property color tertiary: dim(0.25)

    readonly property color ground: Qt.rgba(0.035, 0.045, 0.075, 1)
    readonly property color menuGround: Qt.rgba(0.11, 0.12, 0.16, 1)
    readonly property color outline: white(isContrastHigh ? 0.6 : 0.08)
    readonly property color menuOutline: white(isContrastHigh ? 0.6 : 0.12)
    readonly property color focus: Qt.rgba(0.62, 0.78, 1, 1)

    readonly property int textGap: 6

    // Of the edge that a ground has only where the ground alone does not stand out enough.
    readonly property int edgeWidth: isContrastHigh ? 1 : 0

    readonly property int heroDuration: Wishes.isAnimated ? 220 : 0 // ms

    // White for what may stand back.
    function dim(opacity: real): color {
        return white(isContrastHigh ? Math.max(opacity, 0.75) : opacity);
    }

    // The colour of an outline on this fill: a rectangle's fill ends where its outline begins.
    function outlineOver(fill: color): color {
        return white(1 - (1 - outline.a) * (1 - fill.a));
    }

    function white(opacity: real): color {
        return Qt.rgba(1, 1, 1, opacity);
    }
}
