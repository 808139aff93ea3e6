import QtQuick

// An item's icon, in whose place its thumbnail appears.
Image {
    id: picture

    required property var row
    property real size: 36

    width: size
    height: size
    sourceSize: Qt.size(size, size)
    source: thumbnail.item?.ready ? "" : row.iconSource
    opacity: row.inCloud ? 0.55 : 1
    Accessible.ignored: true

    Loader {
        id: thumbnail

        anchors.fill: parent
        active: picture.row.thumbnailSource.length > 0
        sourceComponent: Thumbnail {
            source: picture.row.thumbnailSource
        }
    }
}
