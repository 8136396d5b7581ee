import QtQuick
import Vigilo
import Vigilo.Privacy

// The lock screen: calm and dark, what the agents' state is, and two ways out.
FocusScope {
    id: view

    required property AgentLockViewModel model

    // On a low display the emblem gives way to what is needed, on a very low one all but the title, and
    // on the lowest the remark at the end.
    readonly property bool isLow: height < 620
    readonly property bool isVeryLow: height < 400
    readonly property bool isTiny: height < 330
    readonly property real aroundPanel: (isLow ? 0 : emblem.height + content.spacing) + heading.height + (isVeryLow ? 0 : awake.height + content.spacing) + unlock.height + appleLock.height + (isTiny ? 0 : closing.height + content.spacing) + 3 * content.spacing

    focus: true
    Keys.onUpPressed: agentStatusPanel.scroll(-1)
    Keys.onDownPressed: agentStatusPanel.scroll(1)
    // Whoever begins to type a password means to unlock; the platform passes the key on to the prompt.
    Keys.onPressed: event => {
        const isCharacter = event.text.length > 0 && event.text > " " && event.key !== Qt.Key_Escape && event.key !== Qt.Key_Delete;
        // A dead key or Compose, the first of several for one character.
        const beginsCharacter = event.key === Qt.Key_Multi_key || (event.key >= Qt.Key_Dead_Grave && event.key <= Qt.Key_Dead_Longsolidusoverlay);
        if ((isCharacter || beginsCharacter) && !(event.modifiers & Qt.ControlModifier)) {
            view.model.pressUnlock();
        }
    }

    GlowField {
        anchors.fill: parent
        ground: Qt.rgba(0.025, 0.032, 0.06, 1)

        Glow {
            color: Qt.rgba(Theme.blue.r, Theme.blue.g, Theme.blue.b, 0.16)
            diameter: 560
            blur: 120
            offsetX: -330
            offsetY: -250
        }

        Glow {
            color: Qt.rgba(Theme.purple.r, Theme.purple.g, Theme.purple.b, 0.14)
            diameter: 520
            blur: 130
            offsetX: 380
            offsetY: 290
        }
    }

    Column {
        id: content

        anchors.centerIn: parent
        spacing: view.isLow ? 12 : 20

        Item {
            id: emblem

            anchors.horizontalCenter: parent.horizontalCenter
            width: 92
            height: 92
            visible: !view.isLow

            // The shadow of the emblem: a disc of its area is as good as its shape behind such a blur.
            GlowField {
                anchors.centerIn: parent
                width: 330
                height: 350

                Glow {
                    color: Qt.rgba(Theme.purple.r, Theme.purple.g, Theme.purple.b, 0.35)
                    diameter: 100
                    blur: 28
                    offsetY: 12
                }
            }

            Emblem {
                anchors.fill: parent
                cornerRadius: 27
                symbolSize: 52
                from: Theme.blue
                to: Theme.purple
            }
        }

        Column {
            id: heading

            anchors.horizontalCenter: parent.horizontalCenter
            spacing: 7

            Label {
                anchors.horizontalCenter: parent.horizontalCenter
                text: "Agent Lock"
                size: 34
                font.weight: Font.Bold
                Accessible.ignored: false
                Accessible.role: Accessible.Heading
                Accessible.name: text
            }

            Label {
                anchors.horizontalCenter: parent.horizontalCenter
                visible: !view.isVeryLow
                text: "Your screen is private. Your work stays awake."
                size: 15
                font.weight: Font.Medium
                color: Theme.secondary
                Accessible.ignored: false
                Accessible.role: Accessible.StaticText
                Accessible.name: text
            }
        }

        Capsule {
            id: awake

            anchors.horizontalCenter: parent.horizontalCenter
            visible: !view.isVeryLow
            width: badge.width + 28
            height: badge.height + 18
            color: Theme.white(0.06)
            Accessible.role: Accessible.StaticText
            Accessible.name: badgeText.text

            Row {
                id: badge

                anchors.centerIn: parent
                spacing: 8

                Rectangle {
                    anchors.verticalCenter: parent.verticalCenter
                    width: 8
                    height: 8
                    radius: 4
                    color: Theme.green
                }

                Label {
                    id: badgeText

                    text: "MAC IS STAYING AWAKE"
                    size: 10
                    font.weight: Font.Bold
                    font.letterSpacing: 1.2
                }
            }
        }

        AgentStatusPanel {
            id: agentStatusPanel

            anchors.horizontalCenter: parent.horizontalCenter
            width: Math.min(560, view.width - 32)
            maximumHeight: view.height - 32 - view.aroundPanel
            model: view.model
        }

        PlainButton {
            id: unlock

            anchors.horizontalCenter: parent.horizontalCenter
            width: 300
            height: 43
            focus: true
            text: "Unlock with Touch ID or Password"
            onClicked: view.model.pressUnlock()
            Accessible.name: "Unlock Agent Lock with Touch ID or password"
            KeyNavigation.tab: appleLock
            KeyNavigation.backtab: appleLock

            background: Rectangle {
                radius: 12
                color: unlock.down ? Qt.darker(Theme.action, 1.2) : unlock.hovered ? Qt.darker(Theme.action, 1.1) : Theme.action
                border.width: Theme.edgeWidth
                border.color: Theme.outline

                FocusRing {
                    radius: 15
                    visible: unlock.visualFocus
                }
            }

            contentItem: Item {
                Row {
                    anchors.centerIn: parent
                    spacing: 7

                    SymbolIcon {
                        anchors.verticalCenter: parent.verticalCenter
                        width: 17
                        height: 17
                        name: "touchid"
                    }

                    Label {
                        anchors.verticalCenter: parent.verticalCenter
                        text: unlock.text
                        size: 14
                        font.weight: Font.DemiBold
                    }
                }
            }
        }

        PlainButton {
            id: appleLock

            anchors.horizontalCenter: parent.horizontalCenter
            width: implicitWidth
            height: 14
            reach: 6
            text: "Use Apple Lock Instead"
            onClicked: view.model.pressUseAppleLock()
            Accessible.name: "Switch to secure Apple Lock"
            KeyNavigation.tab: unlock
            KeyNavigation.backtab: unlock

            background: Item {
                FocusRing {
                    anchors.margins: -6
                    radius: 8
                    visible: appleLock.visualFocus
                }
            }

            contentItem: Label {
                text: appleLock.text
                size: 12
                font.weight: Font.DemiBold
                font.underline: appleLock.hovered
                color: appleLock.down ? Qt.rgba(0.4, 0.6, 0.9, 1) : Qt.rgba(0.5, 0.72, 1, 1)
            }
        }

        Label {
            id: closing

            anchors.horizontalCenter: parent.horizontalCenter
            visible: !view.isTiny
            width: Math.min(implicitWidth, view.width - 32)
            height: lineCount * size * 1.2
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
            elide: Text.ElideNone
            text: "Keeping awake prevents sleep; Agent Lock adds privacy. Apple Lock provides system security."
            size: 11
            font.weight: Font.Medium
            color: Theme.tertiary
            Accessible.ignored: false
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
    }
}
