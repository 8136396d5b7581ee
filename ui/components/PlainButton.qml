import QtQuick
import Vigilo

// A button without a look of its own, as the screen reader knows it.
ButtonArea {
    id: button

    Accessible.role: Accessible.Button
    Accessible.name: text
    Accessible.focusable: true
    Accessible.onPressAction: button.clicked()
}
