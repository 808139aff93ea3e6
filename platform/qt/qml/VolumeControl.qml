import QtQuick

// How loud it is, and silence.
Item {
    id: control

    objectName: "volumeControl"
    implicitHeight: Theme.touch

    SymbolButton {
        id: mute

        objectName: "muteButton"
        anchors.left: parent.left
        anchors.verticalCenter: parent.verticalCenter
        name: Loudness.heard > 0 ? shell.text("Mute") : shell.text("Unmute")
        symbol: Loudness.heard > 0 ? "volume" : "muted"
        directed: true
        onActivated: Loudness.heard > 0 ? Loudness.muted = true : Loudness.set(Loudness.volume > 0 ? Loudness.volume : 1)
    }

    TimeSlider {
        objectName: "volumeSlider"
        anchors.left: mute.right
        anchors.leftMargin: 4
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        seconds: 1
        step: 0.1
        position: Loudness.heard
        name: shell.text("Volume")
        valueText: Math.round(100 * Loudness.heard) + "%"
        onSeek: volume => Loudness.set(volume)
        onDraggedChanged: if (dragged >= 0)
            Loudness.set(dragged)
    }
}
