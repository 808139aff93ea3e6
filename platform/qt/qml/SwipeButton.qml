import QtQuick

// One button beneath a row.
Pressable {
    id: button

    property alias symbol: picture.name
    property alias color: ground.color

    Rectangle {
        id: ground

        anchors.fill: parent
        opacity: button.pressed ? 0.8 : 1
    }

    Symbol {
        id: picture

        anchors.horizontalCenter: parent.horizontalCenter
        anchors.bottom: parent.verticalCenter
        anchors.bottomMargin: -4
        size: 20
        color: "white"
    }

    Text {
        anchors.horizontalCenter: parent.horizontalCenter
        anchors.top: picture.bottom
        anchors.topMargin: 2
        width: parent.width - 8
        text: button.name
        textFormat: Text.PlainText
        font.pixelSize: Theme.tiny
        color: "white"
        elide: Text.ElideRight
        horizontalAlignment: Text.AlignHCenter
        Accessible.ignored: true
    }
}
