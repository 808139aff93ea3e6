import QtQuick

// Shows which control has the keyboard, once the keyboard has been used.
Rectangle {
    property Item control: parent

    anchors.fill: parent
    visible: Theme.keyboard && control.activeFocus
    radius: 6
    color: "transparent"
    border.color: Theme.accent
    border.width: 2
    Accessible.ignored: true
}
