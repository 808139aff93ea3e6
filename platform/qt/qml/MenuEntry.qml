import QtQuick

// One line of a menu.
Pressable {
    id: entry

    property alias symbol: picture.name
    property bool destructive: false
    readonly property color ink: destructive ? Theme.destructive : Theme.text

    objectName: "menuEntry"
    implicitHeight: Math.max(Theme.touch + 4, label.implicitHeight + 16)
    Accessible.role: Accessible.MenuItem

    Rectangle {
        anchors.fill: parent
        anchors.leftMargin: 6
        anchors.rightMargin: 6
        radius: 8
        color: entry.pressed ? Theme.pressed : entry.containsMouse ? Theme.hover : "transparent"
    }

    Symbol {
        id: picture

        anchors.left: parent.left
        anchors.leftMargin: 18
        anchors.verticalCenter: parent.verticalCenter
        color: entry.ink
    }

    Text {
        id: label

        anchors.left: picture.right
        anchors.leftMargin: 14
        anchors.right: parent.right
        anchors.rightMargin: 16
        anchors.verticalCenter: parent.verticalCenter
        text: entry.name
        textFormat: Text.PlainText
        font.pixelSize: Theme.body
        color: entry.ink
        elide: Text.ElideRight
        horizontalAlignment: Text.AlignLeft
        Accessible.ignored: true
    }
}
