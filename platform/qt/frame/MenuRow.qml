import QtQuick
import Vigilo
import Vigilo.Frame

// One line of a menu.
Item {
    id: row

    required property int index
    required property string title
    required property string keys
    required property bool isSelectable
    required property bool isSeparator
    required property int check
    required property bool isCurrent

    // The pointer is at this place of the window.
    signal pointed(x: real, y: real)
    signal pressed

    implicitWidth: 30 + titleLabel.implicitWidth + 20 + keysLabel.implicitWidth
    height: isSeparator ? 9 : 28
    Accessible.role: isSeparator ? Accessible.Separator : isSelectable ? Accessible.MenuItem : Accessible.StaticText
    Accessible.name: title
    Accessible.description: keys
    Accessible.focusable: isSelectable
    Accessible.focused: isCurrent
    Accessible.checkable: check !== MenuModel.NotCheckable
    Accessible.checked: check === MenuModel.On
    Accessible.onPressAction: row.pressed()

    Rectangle {
        anchors.verticalCenter: parent.verticalCenter
        x: 10
        width: parent.width - 20
        height: 1
        color: Theme.menuOutline
        visible: row.isSeparator
    }

    Rectangle {
        anchors.fill: parent
        radius: 7
        color: area.pressed ? Qt.darker(Theme.deepBlue, 1.2) : Theme.deepBlue
        visible: row.isCurrent && row.isSelectable
    }

    MouseArea {
        id: area

        function point() {
            const place = area.mapToItem(null, area.mouseX, area.mouseY);
            row.pointed(place.x, place.y);
        }

        anchors.fill: parent
        hoverEnabled: true
        onEntered: area.point()
        onPositionChanged: area.point()
        onClicked: row.pressed()
    }

    SymbolIcon {
        anchors.verticalCenter: parent.verticalCenter
        x: 10
        width: 12
        height: 12
        name: "checkmark"
        visible: row.check === MenuModel.On
    }

    Rectangle {
        anchors.verticalCenter: parent.verticalCenter
        x: 11
        width: 10
        height: 2
        radius: 1
        visible: row.check === MenuModel.Mixed
    }

    Label {
        id: titleLabel

        anchors.verticalCenter: parent.verticalCenter
        x: 30
        width: parent.width - 30 - keysLabel.width - 20
        text: row.title
        rounded: true
        font.weight: row.isSelectable ? Font.DemiBold : Font.Medium
        color: row.isSelectable ? Theme.primary : Theme.secondary
    }

    Label {
        id: keysLabel

        anchors.right: parent.right
        anchors.rightMargin: 12
        anchors.verticalCenter: parent.verticalCenter
        text: row.keys
        size: 12
        rounded: true
        font.weight: Font.Medium
        color: row.isCurrent && row.isSelectable ? Theme.primary : Theme.secondary
    }
}
