import QtQuick
import Vigilo
import Vigilo.Prompt

// A sheet over the lock screen that asks for the owner's password.
FocusScope {
    id: prompt

    required property UnlockPromptModel model

    // Whatever is said, both the field and the button are on the display.
    readonly property bool isLow: height < 360

    // Where nothing can be typed, only the button hears keys.
    function focusOn(reason: int) {
        (field.enabled ? field : stay).forceActiveFocus(reason);
    }

    anchors.fill: parent
    focus: true
    Accessible.role: Accessible.Dialog
    Accessible.name: model.reason

    KeyboardHints {
        id: keyboard
    }

    Rectangle {
        anchors.fill: parent
        color: Qt.rgba(0, 0, 0, 0.6)

        MouseArea {
            anchors.fill: parent
            hoverEnabled: true
            onClicked: prompt.focusOn(Qt.MouseFocusReason)
        }
    }

    Rectangle {
        anchors.centerIn: parent
        width: Math.min(380, parent.width - 32)
        height: column.height + 56
        radius: 18
        color: Theme.menuGround
        border.width: 1
        border.color: Theme.menuOutline

        Label {
            anchors.right: parent.right
            anchors.rightMargin: 16
            y: 14
            width: Math.min(implicitWidth, 120)
            text: keyboard.layout
            size: 11
            elide: Text.ElideRight
            color: Theme.secondary
            Accessible.ignored: text === ""
            Accessible.role: Accessible.StaticText
            Accessible.name: "Keyboard layout " + text
        }

        Column {
            id: column

            anchors.horizontalCenter: parent.horizontalCenter
            y: 28
            width: parent.width - 56
            spacing: 14

            SymbolIcon {
                anchors.horizontalCenter: parent.horizontalCenter
                width: 34
                height: 34
                name: "lock.fill"
                color: Qt.rgba(0.62, 0.78, 1, 1)
            }

            Label {
                anchors.horizontalCenter: parent.horizontalCenter
                text: prompt.model.reason
                size: 17
                font.weight: Font.Bold
                Accessible.ignored: false
                Accessible.role: Accessible.Heading
                Accessible.name: text
            }

            Rectangle {
                width: parent.width
                height: 38
                radius: 9
                color: Qt.rgba(0, 0, 0, 0.28)
                border.width: field.activeFocus ? 2 : 1
                border.color: field.activeFocus ? Theme.focus : Theme.outline
                opacity: prompt.model.isPossible ? 1 : 0.4

                PasswordField {
                    id: field

                    anchors.fill: parent
                    focus: true
                    enabled: prompt.model.isPossible
                    Accessible.role: Accessible.EditableText
                    Accessible.passwordEdit: true
                    // The toolkit keeps the name of a password field to itself.
                    Accessible.description: prompt.model.question + (hint.text !== "" ? ". " + hint.text : "")
                    Keys.onTabPressed: stay.forceActiveFocus(Qt.TabFocusReason)
                    Keys.onBacktabPressed: stay.forceActiveFocus(Qt.BacktabFocusReason)
                    onEnabledChanged: {
                        field.clear();
                        stay.forceActiveFocus(Qt.TabFocusReason);
                    }
                    onEdited: prompt.model.touch()
                    onSubmitted: prompt.model.submit(field)
                    onCancelled: prompt.model.cancel()
                }

                Label {
                    anchors.centerIn: parent
                    visible: field.length === 0
                    width: Math.min(implicitWidth, parent.width - 24)
                    text: prompt.model.isBusy ? "Checking…" : field.enabled ? prompt.model.question : ""
                    color: Theme.secondary
                }

                Row {
                    anchors.centerIn: parent
                    spacing: 5

                    Repeater {
                        // Beyond these it only matters that there are many.
                        model: Math.min(field.length, 28)

                        Rectangle {
                            width: 6
                            height: 6
                            radius: 3
                        }
                    }
                }
            }

            Text {
                id: hint

                width: parent.width
                height: Math.max(implicitHeight, 16)
                horizontalAlignment: Text.AlignHCenter
                wrapMode: Text.Wrap
                maximumLineCount: prompt.isLow ? 2 : 4
                elide: Text.ElideRight
                textFormat: Text.PlainText
                font.family: Fonts.systemFamily
                font.pixelSize: 12
                renderType: Text.QtRendering
                text: (prompt.model.message + (keyboard.isCapsLockOn ? " Caps Lock is on." : "")).trim()
                color: prompt.model.isError ? Theme.orange : Theme.secondary
                Accessible.ignored: text === ""
                Accessible.role: Accessible.StaticText
                Accessible.name: text
            }

            Label {
                anchors.horizontalCenter: parent.horizontalCenter
                visible: text !== ""
                width: parent.width
                height: implicitHeight
                horizontalAlignment: Text.AlignHCenter
                wrapMode: Text.Wrap
                maximumLineCount: prompt.isLow ? 1 : 3
                elide: Text.ElideRight
                text: prompt.model.fingerprintHint
                size: 12
                color: prompt.model.isFingerprintError ? Theme.orange : Theme.secondary
                Accessible.ignored: !visible
                Accessible.role: Accessible.StaticText
                Accessible.name: text
            }

            PlainButton {
                id: stay

                anchors.horizontalCenter: parent.horizontalCenter
                width: 150
                height: 34
                text: prompt.model.cancelTitle
                onClicked: prompt.model.cancel()
                Keys.onEscapePressed: prompt.model.cancel()
                Keys.onTabPressed: prompt.focusOn(Qt.TabFocusReason)
                Keys.onBacktabPressed: prompt.focusOn(Qt.BacktabFocusReason)

                background: Rectangle {
                    radius: 9
                    color: Theme.white(stay.down ? 0.2 : stay.hovered ? 0.15 : 0.1)
                    border.width: Theme.edgeWidth
                    border.color: Theme.outline

                    FocusRing {
                        radius: 12
                        visible: stay.visualFocus
                    }
                }

                contentItem: Label {
                    horizontalAlignment: Text.AlignHCenter
                    text: stay.text
                    font.weight: Font.DemiBold
                }
            }
        }
    }
}
