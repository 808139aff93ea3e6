import QtQuick

// A button of words.
Pressable {
    id: button

    property alias font: label.font
    property alias color: label.color
    property real padding: 8

    implicitWidth: Math.max(Theme.touch, label.implicitWidth + 2 * padding)
    implicitHeight: Math.max(Theme.touch, label.implicitHeight + 16)

    Text {
        id: label

        anchors.fill: parent
        anchors.leftMargin: button.padding
        anchors.rightMargin: button.padding
        text: button.name
        textFormat: Text.PlainText
        font.pixelSize: Theme.body
        color: button.paint
        opacity: button.pressed && button.usable ? 0.45 : 1
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
        Accessible.ignored: true
    }
}
