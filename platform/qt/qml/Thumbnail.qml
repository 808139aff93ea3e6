import QtQuick

// A small picture of a document on its own sheet; nothing until it has been made.
Item {
    id: thumbnail

    property alias source: image.source
    // A document without one answers an empty image.
    readonly property bool ready: image.status === Image.Ready && image.implicitWidth > 0

    objectName: "thumbnail"
    Accessible.ignored: true

    Image {
        id: image

        anchors.fill: parent
        asynchronous: true
        fillMode: Image.PreserveAspectFit
        sourceSize: Qt.size(width, height)
    }

    Rectangle {
        anchors.centerIn: parent
        visible: thumbnail.ready
        width: image.paintedWidth
        height: image.paintedHeight
        color: "transparent"
        border.color: Theme.hairline
        border.width: 1
    }
}
