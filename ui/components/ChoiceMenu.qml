import QtQuick
import Vigilo

// A capsule that shows a choice and opens a menu of its alternatives.
MenuButtonArea {
    id: button

    required property string label
    required property string value
    required property string symbol
    required property list<string> rows
    property list<string> rowSymbols: []
    required property int currentIndex
    signal chosen(index: int)

    signal opened

    // The menu is made when it is first wanted, and hears of its opening as of any later one.
    function open() {
        if (menuLoader.status === Loader.Null) {
            menuLoader.setSource("ChoiceRows.qml", {
                button: button
            });
        }
        button.opened();
    }

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
        color: Theme.white(button.down || button.isOpen ? 0.19 : button.hovered ? 0.13 : 0.085)
        border.width: Theme.edgeWidth
        border.color: Theme.outline

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
            opacity: Theme.dim(0.65).a
        }
    }

    Loader {
        id: menuLoader
    }
}
