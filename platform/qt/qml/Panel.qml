import QtQuick
import QtQuick.Window

// The ground of what floats over the pages, with the hint of a shadow.
Rectangle {
    radius: 14
    color: Theme.panel
    border.color: Theme.dark ? Theme.hairline : "transparent"
    border.width: Theme.dark ? 1 / Screen.devicePixelRatio : 0

    Rectangle {
        z: -1
        anchors.fill: parent
        anchors.margins: -1
        anchors.bottomMargin: -3
        radius: parent.radius + 1
        color: "#1c000000"
    }

    // What is touched inside is not beside it.
    MouseArea {
        anchors.fill: parent
        acceptedButtons: Qt.AllButtons
    }
}
