import QtQuick
import QtQuick.Templates as T

// A button without a look of its own that Return and Enter press like Space, once, however long held,
// and that a screen reader can press.
T.Button {
    id: button

    function pressByKey(event) {
        if (!event.isAutoRepeat) {
            button.clicked();
        }
    }

    focusPolicy: Qt.StrongFocus
    Accessible.name: text
    Accessible.onPressAction: button.clicked()
    Keys.onReturnPressed: event => pressByKey(event)
    Keys.onEnterPressed: event => pressByKey(event)
}
