import QtQuick
import QtQuick.Templates as T

// A button without a look of its own that Return and Enter press like Space, once, however long held,
// and that a screen reader can press.
T.Button {
    id: button

    // An X server repeats a key as a release and a press, which the toolkit does not always see
    // through when it is busy. No finger is that fast.
    property int releasedKey: 0
    property double releaseTime: 0

    function pressByKey(event) {
        const isRepeated = event.isAutoRepeat || event.key === releasedKey && Date.now() - releaseTime < 30;
        if (!isRepeated) {
            button.clicked();
        }
    }

    focusPolicy: Qt.StrongFocus
    Accessible.name: text
    Accessible.onPressAction: button.clicked()
    Keys.onReturnPressed: event => pressByKey(event)
    Keys.onEnterPressed: event => pressByKey(event)
    Keys.onReleased: event => {
        releasedKey = event.key;
        releaseTime = Date.now();
    }
}
