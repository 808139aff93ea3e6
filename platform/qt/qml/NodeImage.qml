import QtQuick

// A picture, stretched to its frame.
Image {
    id: image

    required property var node

    source: node?.imageSource ?? ""
    sourceSize: node?.iconSize
    smooth: node?.smooth ?? true
    fillMode: Image.Stretch
    Accessible.role: Accessible.Graphic
    Accessible.name: node?.accessibleName ?? ""
    Accessible.ignored: Accessible.name.length === 0

    Rectangle {
        anchors.fill: parent
        visible: border.width > 0
        color: "transparent"
        border.width: image.node?.borderWidth ?? 0
        border.color: image.node?.borderColor ?? "transparent"
    }

    NodeChildren {
        node: image.node
    }
}
