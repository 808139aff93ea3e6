import QtQuick
import Tessel

// Sound or a film, which can be played.
Item {
    id: view

    property var preview: null
    property bool covered: false

    objectName: "previewMedia"

    function handle(event) {
        switch (event.key) {
        case Qt.Key_Space: return player.toggle(), true
        case Qt.Key_Up: return Loudness.set(Loudness.volume + 0.1), true
        case Qt.Key_Down: return Loudness.set(Loudness.volume - 0.1), true
        case Qt.Key_M: return Loudness.muted = !Loudness.muted, true
        }
        return slider.handle(event)
    }

    Rectangle {
        anchors.fill: player
        visible: player.pictured
        color: "black"
    }

    DocumentPlayer {
        id: player

        objectName: "player"
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: parent.top
        anchors.bottom: controls.top
        preview: view.preview
        active: !view.covered && view.visible && shell.active
        volume: Loudness.heard
        Accessible.role: Accessible.Graphic
        Accessible.name: view.preview?.name ?? ""
        Accessible.ignored: !pictured

        TapHandler {
            onTapped: player.toggle()
        }
    }

    Column {
        anchors.centerIn: player
        width: Math.min(parent.width - 2 * Theme.margin, 400 * Theme.textScale)
        visible: !player.pictured
        spacing: 10

        Rectangle {
            anchors.horizontalCenter: parent.horizontalCenter
            width: Math.min(280, 0.64 * parent.width, player.height - words.height - 40)
            height: width
            radius: 24
            visible: width > 72
            color: Theme.field

            Image {
                anchors.centerIn: parent
                width: parent.width / 2
                height: width
                source: view.preview?.icon ?? ""
                sourceSize: Qt.size(width, height)
                Accessible.ignored: true
            }
        }

        Column {
            id: words

            width: parent.width
            spacing: 4

            Text {
                width: parent.width
                text: view.preview?.name ?? ""
                textFormat: Text.PlainText
                font.pixelSize: Theme.heading
                font.bold: true
                color: Theme.text
                wrapMode: Text.Wrap
                maximumLineCount: 4
                elide: Text.ElideRight
                horizontalAlignment: Text.AlignHCenter
                Accessible.role: Accessible.Heading
                Accessible.name: text
            }

            Text {
                objectName: "previewDetail"
                width: parent.width
                text: view.preview?.detail ?? ""
                textFormat: Text.PlainText
                font.pixelSize: Theme.body
                color: Theme.secondaryText
                wrapMode: Text.Wrap
                horizontalAlignment: Text.AlignHCenter
                Accessible.role: Accessible.StaticText
                Accessible.name: text
            }
        }
    }

    Item {
        id: controls

        // A film, or little room, has all of them in one row.
        readonly property bool low: player.pictured || view.height < 480

        anchors.horizontalCenter: parent.horizontalCenter
        anchors.bottom: parent.bottom
        anchors.bottomMargin: low ? 4 : 20
        width: Math.min(parent.width - 2 * Theme.margin, 640)
        height: low || !volume.visible ? button.y + button.height : volume.y + volume.height

        TimeSlider {
            id: slider

            objectName: "timeSlider"
            width: parent.width
            usable: player.ready && player.seconds > 0
            seconds: player.seconds
            position: player.position
            name: shell.text("Position")
            valueText: elapsed.text + " / " + remaining.text
            onSeek: position => player.seek(position)
        }

        TimeText {
            id: elapsed

            objectName: "elapsed"
            anchors.left: parent.left
            y: slider.height - 10
            text: player.elapsed
            Accessible.name: shell.text("Time elapsed: %@").replace("%@", text)
        }

        TimeText {
            id: remaining

            objectName: "remaining"
            anchors.right: parent.right
            y: elapsed.y
            visible: player.seconds > 0
            text: player.remaining
            Accessible.name: shell.text("Time remaining: %@").replace("%@", text)
        }

        SymbolButton {
            id: button

            objectName: "playButton"
            anchors.horizontalCenter: parent.horizontalCenter
            y: elapsed.y + elapsed.height + (controls.low ? -8 : 4)
            width: controls.low ? 52 : 68
            height: width
            name: player.playing ? shell.text("Pause") : shell.text("Play")
            symbol: player.playing ? "pause" : "play"
            color: Theme.accentText
            usable: player.ready
            onActivated: player.toggle()

            Rectangle {
                z: -1
                anchors.fill: parent
                radius: width / 2
                color: button.usable ? Theme.accent : Theme.faint
            }
        }

        VolumeControl {
            id: volume

            visible: player.heard
            width: controls.low ? (parent.width - button.width) / 2 - 20 : Math.min(parent.width, 300)
            x: !controls.low ? (parent.width - width) / 2 : shell.mirrored ? parent.width - width : 0
            y: controls.low ? button.y + (button.height - height) / 2 : button.y + button.height + 8
        }
    }

    component TimeText: Text {
        textFormat: Text.PlainText
        font.pixelSize: Theme.caption
        color: Theme.secondaryText
        Accessible.role: Accessible.StaticText
    }
}
