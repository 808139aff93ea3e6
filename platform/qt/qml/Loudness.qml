pragma Singleton

import QtQuick

// How loud sound and films are, for as long as the program runs.
QtObject {
    property real volume: 1
    property bool muted: false
    readonly property real heard: muted ? 0 : volume

    function set(wanted) {
        volume = Math.max(0, Math.min(1, wanted))
        muted = false
    }
}
