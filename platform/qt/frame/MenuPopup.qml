import QtQuick
import QtQuick.Templates as T
import QtQuick.Window
import Vigilo
import Vigilo.Frame

// A menu over the window's content, below the buttons of the window's frame.
T.Popup {
    id: popup

    required property WindowFrame frame

    parent: frame
    x: parent.width - width - 8
    y: 30
    padding: 6
    margins: 8
    focus: true
    implicitWidth: implicitContentWidth + 12
    implicitHeight: implicitContentHeight + 12
    closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutside

    // Where the keyboard was, and whether that was to be seen.
    property Item focusBefore: null
    property bool wasFocusShown: false

    onAboutToShow: {
        popup.focusBefore = popup.frame.Window.activeFocusItem;
        const button = popup.focusBefore as ButtonArea;
        popup.wasFocusShown = button !== null && button.visualFocus;
        // The screen reader sees the item around the content, and would call it a dialogue.
        popup.contentItem.parent.Accessible.ignored = true;
        popup.frame.mainMenu.prepare();
    }

    onVisibleChanged: popup.frame.isMenuOpen = visible

    onClosed: {
        if (popup.focusBefore !== null && popup.focusBefore.visible) {
            popup.focusBefore.forceActiveFocus(popup.wasFocusShown ? Qt.TabFocusReason : Qt.PopupFocusReason);
        }
    }

    Connections {
        target: popup.frame

        function onMenuWanted() {
            popup.open();
        }
    }

    background: Rectangle {
        radius: 12
        color: Theme.menuGround
        border.width: 1
        border.color: Theme.menuOutline
    }

    contentItem: MenuList {
        menu: popup.frame.mainMenu
        title: "Vigilo"
        focus: true
        onDismissed: popup.close()
    }
}
