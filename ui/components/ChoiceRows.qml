pragma ComponentBehavior: Bound

import QtQuick
import Vigilo
import QtQuick.Templates as T

// The alternatives of a choice, as a menu below it.
T.Menu {
    id: menu

    required property ChoiceMenu button

    // Who came by keyboard sees where the focus is when the menu has closed.
    property int focusReason: Qt.PopupFocusReason

    // The screen reader sees the item around the content.
    onAboutToShow: menu.contentItem.parent.Accessible.name = menu.button.label
    implicitWidth: Math.max(menu.button.width, contentItem.implicitWidth + 12)
    implicitHeight: contentItem.implicitHeight + 12
    padding: 6
    margins: 8
    modal: false
    closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutside
    onClosed: menu.button.forceActiveFocus(menu.focusReason)

    onVisibleChanged: menu.button.isOpen = visible

    Connections {
        target: menu.button

        function onOpened() {
            menu.focusReason = menu.button.visualFocus ? Qt.TabFocusReason : Qt.PopupFocusReason;
            menu.popup(menu.button, 0, menu.button.height + 6);
            menu.currentIndex = Math.max(menu.button.currentIndex, 0);
        }

        // What is chosen for the next session cannot be changed while one runs, wherever it was begun.
        function onVisibleChanged() {
            if (!menu.button.visible) {
                menu.close();
            }
        }
    }

    background: Rectangle {
        radius: 12
        color: Theme.menuGround
        border.width: 1
        border.color: Theme.menuOutline
    }

    contentItem: ListView {
        implicitWidth: 176
        implicitHeight: contentHeight
        model: menu.contentModel
        interactive: contentHeight > height
        clip: interactive
        boundsBehavior: Flickable.StopAtBounds
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
                if (menu.button.rows[index].toLowerCase().startsWith(letter)) {
                    menu.currentIndex = index;
                    event.accepted = true;
                    return;
                }
            }
        }
    }

    Repeater {
        model: menu.button.rows

        T.MenuItem {
            id: item

            required property int index
            required property string modelData
            readonly property bool isCurrent: index === menu.button.currentIndex

            implicitWidth: 164
            implicitHeight: 30
            text: modelData
            checkable: true
            checked: isCurrent
            onTriggered: {
                // A press has turned the check mark over.
                checked = Qt.binding(() => isCurrent);
                menu.button.chosen(index);
            }
            Accessible.name: text
            Accessible.onPressAction: {
                item.triggered();
                menu.close();
            }

            background: Rectangle {
                radius: 7
                color: item.down ? Qt.darker(Theme.deepBlue, 1.2) : Theme.deepBlue
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
                            name: item.isCurrent || menu.button.rowSymbols.length === 0 ? "checkmark" : menu.button.rowSymbols[item.index]
                            visible: item.isCurrent || menu.button.rowSymbols.length > 0
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
