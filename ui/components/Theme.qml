pragma Singleton

import QtQml
import QtQuick

// Colours and distances of every screen, for the dark scheme.
QtObject {
    readonly property color blue: "#0A84FF"
    // Small white text stands out on this one, not on the other.
    readonly property color deepBlue: "#0A6FE0"
    readonly property color purple: "#BF5AF2"
    readonly property color green: "#30D158"
    readonly property color orange: "#FF9F0A"

    readonly property color primary: "white"
    readonly property color secondary: white(0.55)
    readonly property color tertiary: white(0.25)

    readonly property color ground: Qt.rgba(0.035, 0.045, 0.075, 1)
    readonly property color menuGround: Qt.rgba(0.11, 0.12, 0.16, 1)
    readonly property color outline: white(0.08)
    readonly property color focus: Qt.rgba(0.62, 0.78, 1, 1)

    readonly property int textGap: 6

    readonly property int heroDuration: 220 // ms

    // The colour of an outline on this fill: a rectangle's fill ends where its outline begins.
    function outlineOver(fill: color): color {
        return white(1 - (1 - outline.a) * (1 - fill.a));
    }

    function white(opacity: real): color {
        return Qt.rgba(1, 1, 1, opacity);
    }
}
