import QtQuick
import Tessel

// Stands in place of a document's content: what it is, how far its download is, or what is wrong with it.
Item {
    id: notice

    required property var preview
    readonly property bool looking: preview.state === DocumentPreview.Looking
    readonly property bool downloading: preview.state === DocumentPreview.Downloading
    readonly property bool failed: preview.state === DocumentPreview.Failed

    objectName: "previewNotice"
    // What is found out at once does not flash.
    opacity: looking && patience.running ? 0 : 1

    Timer {
        id: patience

        interval: 150
        running: notice.looking
    }

    Column {
        anchors.centerIn: parent
        anchors.verticalCenterOffset: -parent.height * 0.05
        width: Math.min(parent.width - 2 * Theme.margin, 400 * Theme.textScale)
        spacing: 10

        Image {
            anchors.horizontalCenter: parent.horizontalCenter
            source: notice.preview.icon
            sourceSize: Qt.size(96, 96)
            opacity: notice.failed ? 0.5 : 1
            Accessible.ignored: true
        }

        Text {
            width: parent.width
            text: notice.preview.name
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
            visible: text.length > 0
            text: notice.preview.detail
            textFormat: Text.PlainText
            font.pixelSize: Theme.body
            color: notice.failed ? Theme.text : Theme.secondaryText
            wrapMode: Text.Wrap
            horizontalAlignment: Text.AlignHCenter
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }

        Item {
            width: parent.width
            height: 44
            visible: notice.downloading || notice.looking

            ProgressRing {
                anchors.centerIn: parent
                size: 32
                value: notice.downloading ? notice.preview.fraction : -1
            }
        }

        TextButton {
            objectName: "previewButton"
            anchors.horizontalCenter: parent.horizontalCenter
            visible: name.length > 0
            name: notice.preview.button
            font.bold: true
            onActivated: notice.preview.pressButton()
        }
    }
}
