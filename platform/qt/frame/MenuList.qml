pragma ComponentBehavior: Bound

import QtQuick
import Vigilo.Frame

// The lines of a menu, chosen with the pointer or the keyboard.
FocusScope {
    id: lines

    required property MenuModel menu
    required property string title

    // The line that Return chooses; -1 for none.
    property int currentIndex: -1

    readonly property int leastWidth: 252

    // Where the pointer was last.
    property real pointerX: -1
    property real pointerY: -1

    signal dismissed

    // Nothing is chosen at first; the keyboard begins at an end.
    function begin() {
        lines.currentIndex = -1;
        lines.pointerX = -1;
        // Not the line that had it when the menu was shown before.
        area.forceActiveFocus(Qt.PopupFocusReason);
    }

    function choose(row: int) {
        if (lines.menu.isSelectable(row)) {
            lines.menu.trigger(row);
            lines.dismissed();
        }
    }

    // Lines that the keyboard moves below a pointer at rest are not meant by it.
    function point(row: int, x: real, y: real) {
        if (x !== lines.pointerX || y !== lines.pointerY) {
            lines.pointerX = x;
            lines.pointerY = y;
            lines.currentIndex = row;
        }
    }

    // The longest title is read whole where there is room for it.
    function widen() {
        let widest = lines.leastWidth;
        for (let index = 0; index < rows.count; ++index) {
            const row = rows.itemAt(index) as MenuRow;
            widest = row === null ? widest : Math.max(widest, Math.ceil(row.implicitWidth));
        }
        lines.implicitWidth = widest;
    }

    function step(direction: int) {
        const from = lines.currentIndex < 0 && direction < 0 ? rows.count : lines.currentIndex;
        lines.currentIndex = lines.menu.nextSelectable(from, direction);
    }

    implicitWidth: leastWidth
    implicitHeight: column.implicitHeight
    Accessible.role: Accessible.PopupMenu
    Accessible.name: title

    onVisibleChanged: {
        if (visible) {
            lines.begin();
        }
    }

    Keys.onUpPressed: lines.step(-1)
    Keys.onDownPressed: lines.step(1)
    Keys.onTabPressed: lines.step(1)
    Keys.onBacktabPressed: lines.step(-1)
    Keys.onReturnPressed: lines.choose(lines.currentIndex)
    Keys.onEnterPressed: lines.choose(lines.currentIndex)
    Keys.onSpacePressed: lines.choose(lines.currentIndex)
    Keys.onEscapePressed: lines.dismissed()
    Keys.onPressed: event => {
        // Home and End go to the ends, a letter to the next line that begins with it.
        if (event.key === Qt.Key_Home || event.key === Qt.Key_End) {
            const isHome = event.key === Qt.Key_Home;
            lines.currentIndex = lines.menu.nextSelectable(isHome ? -1 : rows.count, isHome ? 1 : -1);
            event.accepted = true;
        } else if (event.text.length === 1 && event.text > " ") {
            const found = lines.menu.nextBeginningWith(event.text, lines.currentIndex);
            lines.currentIndex = found < 0 ? lines.currentIndex : found;
            event.accepted = true;
        }
    }

    // A menu that is longer than there is room for is scrolled.
    Flickable {
        id: area

        anchors.fill: parent
        contentHeight: column.implicitHeight
        interactive: contentHeight > height
        clip: interactive
        boundsBehavior: Flickable.StopAtBounds

        Column {
            id: column

            width: lines.width

            Repeater {
                id: rows

                model: lines.menu

                MenuRow {
                    width: lines.width
                    onImplicitWidthChanged: lines.widen()
                    isCurrent: index === lines.currentIndex
                    onIsCurrentChanged: {
                        if (isCurrent) {
                            // The screen reader follows the focus; keys that a line does not take come here.
                            forceActiveFocus(Qt.PopupFocusReason);
                            area.contentY = Math.max(Math.min(area.contentY, y), y + height - area.height, 0);
                        }
                    }
                    onPointed: (x, y) => lines.point(index, x, y)
                    onPressed: lines.choose(index)
                }
            }
        }
    }
}
