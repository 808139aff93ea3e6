import QtQuick

// The way back: a chevron, and the title of the page beneath where there is room for it.
Pressable {
    id: back

    property string previousTitle
    property real room: 100
    readonly property bool worded: previousTitle.length > 0 && label.implicitWidth <= room - chevron.width - 12

    objectName: "backButton"
    name: previousTitle.length > 0 ? shell.text("Back to %@").replace("%@", () => previousTitle) : shell.text("Back")
    width: Math.max(Theme.touch, chevron.width + (worded ? label.implicitWidth + 12 : 8))
    onActivated: shell.back()

    Symbol {
        id: chevron

        anchors.left: parent.left
        anchors.leftMargin: 2
        anchors.verticalCenter: parent.verticalCenter
        name: "back-chevron"
        directed: true
        opacity: label.opacity
    }

    Text {
        id: label

        anchors.left: chevron.right
        anchors.leftMargin: 2
        anchors.verticalCenter: parent.verticalCenter
        visible: back.worded
        text: back.previousTitle
        textFormat: Text.PlainText
        font.pixelSize: Theme.body
        color: Theme.accent
        opacity: back.pressed ? 0.45 : 1
        horizontalAlignment: Text.AlignLeft
        Accessible.ignored: true
    }
}
