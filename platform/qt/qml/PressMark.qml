import QtQuick

// Which item of a list shows that it is touched: not at once, for the touch may become a scroll, but also for a moment
// after a touch that was too short.
QtObject {
    id: mark

    property Item item: null
    property Item candidate: null

    function begin(item) {
        candidate = item
        delay.restart()
    }

    function end() {
        delay.stop()
        if (!fade.running)
            item = null
    }

    function flash(item) {
        mark.item = item
        fade.restart()
    }

    readonly property Timer delay: Timer {
        interval: 70
        onTriggered: mark.item = mark.candidate
    }
    readonly property Timer fade: Timer {
        interval: 150
        onTriggered: mark.item = null
    }
}
