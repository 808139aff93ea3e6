import QtQuick

// Whether an item is selected: a ring, or a disc with a check.
Rectangle {
    id: circle

    property bool selected: false

    width: 24
    height: 24
    radius: 12
    color: selected ? Theme.accent : Theme.background
    border.color: selected ? Theme.accent : Theme.faint
    border.width: 1.5
    Accessible.ignored: true

    Symbol {
        anchors.centerIn: parent
        visible: circle.selected
        name: "check"
        size: 16
        color: Theme.accentText
    }
}
