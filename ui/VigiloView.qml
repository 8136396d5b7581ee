import QtQuick
import Vigilo
import QtQuick.Window

// The main window's content: the state of the machine, the next session's choice, one large button.
Item {
    id: view

    required property VigiloViewModel model

    // Only a change of state moves the hero, not the first layout.
    property bool isLaidOut: false

    // A display with little room, as one has with very large text, gets a smaller window. What is
    // needed least goes first.
    readonly property bool isLow: height < 388
    readonly property bool isVeryLow: height < 312
    readonly property int margin: width < 520 ? 16 : 44

    // Who had the keyboard and has gone leaves it to the large button.
    readonly property Item focusItem: Window.activeFocusItem
    property bool isFocusShown: false
    readonly property bool isActive: model.isActive

    width: 720
    height: 560
    Component.onCompleted: isLaidOut = true
    onIsActiveChanged: focusCheck.restart()
    onFocusItemChanged: {
        const button = focusItem as ButtonArea;
        if (button !== null) {
            isFocusShown = button.visualFocus;
        }
        focusCheck.restart();
    }

    // Later, since a menu that closes gives the keyboard back in two steps.
    Timer {
        id: focusCheck

        interval: 0
        onTriggered: {
            if (view.focusItem !== null && (!view.focusItem.visible || view.focusItem === view.Window.contentItem)) {
                actionRow.forceActiveFocus(view.isFocusShown ? Qt.TabFocusReason : Qt.OtherFocusReason);
            }
        }
    }

    GlowField {
        id: ambientBackground

        anchors.fill: parent
        ground: Theme.ground

        Glow {
            color: Qt.rgba(0.15, 0.48, 1, 0.2)
            diameter: 390
            blur: 85
            offsetX: view.width * -0.38
            offsetY: view.height * -0.34
        }

        Glow {
            color: Qt.rgba(0.46, 0.25, 1, 0.17)
            diameter: 340
            blur: 95
            offsetX: view.width * 0.42
            offsetY: view.height * 0.36
        }
    }

    DragHandler {
        target: null
        onActiveChanged: {
            if (active) {
                view.Window.window.startSystemMove();
            }
        }
    }

    Row {
        id: header

        x: view.margin
        y: 28
        height: 38
        spacing: 11

        Emblem {
            width: 38
            height: 38
            cornerRadius: 11
            symbolSize: 20
            from: Theme.blue
            to: Theme.purple
        }

        Column {
            anchors.verticalCenter: parent.verticalCenter
            spacing: 1
            Accessible.role: Accessible.StaticText
            Accessible.name: "Vigilo, Your work keeps moving"

            Label {
                text: "Vigilo"
                size: 16
                rounded: true
                font.weight: Font.DemiBold
            }

            Label {
                text: "Your work keeps moving"
                size: 11
                rounded: true
                font.weight: Font.Medium
                color: Theme.secondary
            }
        }
    }

    StatusPill {
        anchors.right: parent.right
        anchors.rightMargin: view.margin
        anchors.verticalCenter: header.verticalCenter
        active: view.model.isActive
        text: view.model.pillText
    }

    Column {
        id: middle

        anchors.horizontalCenter: parent.horizontalCenter
        // The space between header and footer is shared evenly above and below.
        y: header.y + header.height + (end - header.y - header.height - height) / 2

        readonly property real end: view.isVeryLow ? view.height - 8 : footer.y

        Behavior on y {
            enabled: view.isLaidOut

            NumberAnimation {
                duration: Theme.heroDuration
                easing.type: Easing.InOutQuad
            }
        }

        Column {
            id: hero

            anchors.horizontalCenter: parent.horizontalCenter
            spacing: 9

            SymbolIcon {
                anchors.horizontalCenter: parent.horizontalCenter
                width: 40
                height: 40
                visible: !view.isLow
                name: view.model.heroSymbol
                color: view.model.isActive ? Theme.green : Qt.rgba(0.48, 0.68, 1, 1)

                Behavior on color {
                    ColorAnimation {
                        duration: Theme.heroDuration
                        easing.type: Easing.InOutQuad
                    }
                }
            }

            Label {
                anchors.horizontalCenter: parent.horizontalCenter
                width: Math.min(implicitWidth, view.width - 2 * view.margin)
                height: lineCount * size * 1.2
                horizontalAlignment: Text.AlignHCenter
                wrapMode: Text.Wrap
                elide: Text.ElideNone
                text: view.model.headline
                size: 30
                rounded: true
                font.weight: Font.DemiBold
                Accessible.ignored: false
                Accessible.role: Accessible.Heading
                Accessible.name: text
            }

            Label {
                anchors.horizontalCenter: parent.horizontalCenter
                width: Math.min(implicitWidth, view.width - 2 * view.margin)
                text: view.model.statusText
                rounded: true
                font.weight: Font.Medium
                color: Theme.secondary
                Accessible.ignored: false
                Accessible.role: Accessible.StaticText
                Accessible.name: text
            }
        }

        Item {
            width: 1
            height: view.isLow ? 14 : 30
        }

        SessionSentence {
            id: sessionSentence

            anchors.horizontalCenter: parent.horizontalCenter
            visible: !view.model.isActive
            model: view.model
        }

        Row {
            id: activeSessionSummary

            anchors.horizontalCenter: parent.horizontalCenter
            spacing: Theme.textGap
            visible: view.model.isActive
            Accessible.role: Accessible.StaticText
            Accessible.name: view.model.activeModeTitle

            SymbolIcon {
                anchors.verticalCenter: parent.verticalCenter
                width: 15
                height: 15
                name: view.model.activeModeSymbol
                color: Qt.rgba(0.62, 0.78, 1, 1)
            }

            Label {
                anchors.verticalCenter: parent.verticalCenter
                text: view.model.activeModeTitle
                rounded: true
                font.weight: Font.DemiBold
                color: Qt.rgba(0.62, 0.78, 1, 1)
            }
        }

        Item {
            width: 1
            height: view.isLow ? 12 : 22
        }

        ActionButton {
            id: actionRow

            anchors.horizontalCenter: parent.horizontalCenter
            focus: true
            text: view.model.actionTitle
            symbol: view.model.actionSymbol
            ground: view.model.isActive ? Theme.white(0.1) : Theme.action
            onClicked: view.model.pressAction()
        }
    }

    Row {
        id: footer

        anchors.horizontalCenter: parent.horizontalCenter
        y: view.height - (view.isLow ? 14 : 28) - height
        height: Math.max(14, footerText.height)
        visible: !view.isVeryLow
        spacing: 7
        Accessible.role: Accessible.StaticText
        Accessible.name: footerText.text

        SymbolIcon {
            anchors.verticalCenter: parent.verticalCenter
            width: 14
            height: 14
            name: "laptopcomputer"
            color: Theme.secondary
        }

        Label {
            id: footerText

            anchors.verticalCenter: parent.verticalCenter
            width: Math.min(implicitWidth, view.width - 2 * view.margin - 21)
            height: lineCount * size * 1.2
            wrapMode: Text.Wrap
            elide: Text.ElideNone
            text: "Closed-lid use requires Apple’s external display and power setup."
            size: 11
            font.weight: Font.Medium
            color: Theme.secondary
        }
    }
}
