import QtQuick

// A button in the system's style: words or a picture in the accent colour.
Pressable {
    id: button

    required property var node
    readonly property bool pictured: (node?.imageSource ?? "").length > 0

    name: node?.accessibleName || node?.title || ""
    usable: node?.enabled ?? false
    onActivated: node.press()

    Rectangle {
        anchors.fill: parent
        color: button.node?.color ?? "transparent"
        border.width: button.node?.borderWidth ?? 0
        border.color: button.node?.borderColor ?? "transparent"
    }

    Text {
        anchors.fill: parent
        visible: !button.pictured && (button.node?.symbol ?? "").length === 0
        text: button.node?.title ?? ""
        textFormat: Text.PlainText
        font: button.node?.font ?? Qt.application.font
        color: button.paint
        opacity: button.pressed && button.usable ? 0.45 : 1
        elide: Text.ElideRight
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
        Accessible.ignored: true
    }

    Symbol {
        anchors.centerIn: parent
        name: button.node?.symbol ?? ""
        visible: name.length > 0
        color: button.paint
        opacity: button.pressed && button.usable ? 0.45 : 1
    }

    Image {
        anchors.fill: parent
        visible: button.pictured
        source: button.node?.imageSource ?? ""
        opacity: !button.usable ? 0.4 : button.pressed ? 0.45 : 1
        fillMode: Image.PreserveAspectFit
        Accessible.ignored: true
    }

    NodeChildren {
        node: button.node
    }
}
