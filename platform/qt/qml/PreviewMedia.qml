import QtQuick
import Tessel

// Sound or a film, which can be played.
Item {
    id: view

    property var preview: null
    property bool covered: false

    objectName: "previewMedia"

    function handle(event) {
        if (event.key !== Qt.Key_Space)
            return slider.handle(event)
        player.toggle()
        return true
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

        Image {
            anchors.horizontalCenter: parent.horizontalCenter
            source: view.preview?.icon ?? ""
            sourceSize: Qt.size(96, 96)
            Accessible.ignored: true
        }

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

    Column {
        id: controls

        anchors.horizontalCenter: parent.horizontalCenter
        anchors.bottom: parent.bottom
        anchors.bottomMargin: 8
        width: Math.min(parent.width - 2 * Theme.margin, 640)

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

        Item {
            width: parent.width
            height: Math.max(button.height, elapsed.height)

            TimeText {
                id: elapsed

                objectName: "elapsed"
                anchors.left: parent.left
                anchors.verticalCenter: parent.verticalCenter
                text: player.elapsed
                Accessible.name: shell.text("Time elapsed: %@").replace("%@", text)
            }

            SymbolButton {
                id: button

                objectName: "playButton"
                anchors.centerIn: parent
                name: player.playing ? shell.text("Pause") : shell.text("Play")
                symbol: player.playing ? "pause" : "play"
                usable: player.ready
                onActivated: player.toggle()
            }

            TimeText {
                id: remaining

                objectName: "remaining"
                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                text: player.remaining
                Accessible.name: shell.text("Time remaining: %@").replace("%@", text)
            }
        }
    }

    component TimeText: Text {
        textFormat: Text.PlainText
        font.pixelSize: Theme.caption
        color: Theme.secondaryText
        Accessible.role: Accessible.StaticText
    }
}
