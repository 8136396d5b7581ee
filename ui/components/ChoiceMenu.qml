pragma ComponentBehavior: Bound

import QtQuick
import Vigilo
import QtQuick.Templates as T

// A capsule that shows a choice and opens a menu of its alternatives.
PlainButton {
    id: button

    required property string label
    required property string value
    required property string symbol
    required property list<string> rows
    property list<string> rowSymbols: []
    required property int currentIndex
    signal chosen(index: int)

    function open() {
        menu.focusReason = button.visualFocus ? Qt.TabFocusReason : Qt.PopupFocusReason;
        menu.popup(button, 0, button.height + 6);
        menu.currentIndex = Math.max(button.currentIndex, 0);
    }

    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    horizontalPadding: 12
    verticalPadding: 9
    Accessible.role: Accessible.ButtonMenu
    Accessible.name: label
    Accessible.description: value
    onClicked: button.open()
    Keys.onDownPressed: button.open()
    Keys.onUpPressed: button.open()

    background: Rectangle {
        radius: height / 2
        color: Theme.white(button.down || menu.visible ? 0.19 : button.hovered ? 0.13 : 0.085)

        FocusRing {
            radius: height / 2
            visible: button.visualFocus
        }
    }

    contentItem: Row {
        spacing: Theme.textGap

        SymbolIcon {
            anchors.verticalCenter: parent.verticalCenter
            width: 14
            height: 14
            name: button.symbol
        }

        Label {
            anchors.verticalCenter: parent.verticalCenter
            text: button.value
            rounded: true
            font.weight: Font.DemiBold
        }

        SymbolIcon {
            anchors.verticalCenter: parent.verticalCenter
            width: 9
            height: 9
            name: "chevron.down"
            opacity: 0.65
        }
    }

    T.Menu {
        id: menu

        // Who came by keyboard sees where the focus is when the menu has closed.
        property int focusReason: Qt.PopupFocusReason

        // The screen reader sees the item around the content.
        onAboutToShow: menu.contentItem.parent.Accessible.name = button.label
        implicitWidth: Math.max(button.width, contentItem.implicitWidth + 12)
        implicitHeight: contentItem.implicitHeight + 12
        padding: 6
        margins: 8
        modal: false
        closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutside
        onClosed: button.forceActiveFocus(menu.focusReason)

        background: Rectangle {
            radius: 12
            color: Theme.menuGround
            border.width: 1
            border.color: Theme.white(0.12)
        }

        contentItem: ListView {
            implicitWidth: 176
            implicitHeight: contentHeight
            model: menu.contentModel
            interactive: false
            currentIndex: menu.currentIndex
            // Home and End go to the ends, a letter to the next row that begins with it.
            Keys.onPressed: event => {
                if (event.key === Qt.Key_Home || event.key === Qt.Key_End) {
                    menu.currentIndex = event.key === Qt.Key_Home ? 0 : menu.count - 1;
                    event.accepted = true;
                    return;
                }
                const letter = event.text.toLowerCase();
                if (letter.length !== 1 || letter < "!") {
                    return;
                }
                for (let step = 1; step <= menu.count; ++step) {
                    const index = (menu.currentIndex + step) % menu.count;
                    if (button.rows[index].toLowerCase().startsWith(letter)) {
                        menu.currentIndex = index;
                        event.accepted = true;
                        return;
                    }
                }
            }
        }

        Repeater {
            model: button.rows

            T.MenuItem {
                id: item

                required property int index
                required property string modelData
                readonly property bool isCurrent: index === button.currentIndex

                implicitWidth: 164
                implicitHeight: 30
                text: modelData
                checkable: true
                checked: isCurrent
                onTriggered: {
                    // A press has turned the check mark over.
                    checked = Qt.binding(() => isCurrent);
                    button.chosen(index);
                }
                Accessible.name: text
                Accessible.onPressAction: {
                    item.triggered();
                    menu.close();
                }

                background: Rectangle {
                    radius: 7
                    color: item.down ? Qt.darker(Theme.blue, 1.2) : Theme.blue
                    visible: item.highlighted || item.hovered || item.down
                }

                contentItem: Item {
                    Row {
                        anchors.verticalCenter: parent.verticalCenter
                        x: 10
                        spacing: 8

                        Item {
                            anchors.verticalCenter: parent.verticalCenter
                            width: 14
                            height: 14

                            SymbolIcon {
                                anchors.fill: parent
                                name: item.isCurrent || button.rowSymbols.length === 0 ? "checkmark" : button.rowSymbols[item.index]
                                visible: item.isCurrent || button.rowSymbols.length > 0
                            }
                        }

                        Label {
                            anchors.verticalCenter: parent.verticalCenter
                            text: item.text
                            rounded: true
                            font.weight: Font.DemiBold
                        }
                    }
                }
            }
        }
    }
}
