import QtQuick

// One of the program's own symbols in one colour.
Image {
    id: symbol

    property string name
    property color color: Theme.accent
    property real size: Theme.symbolSize
    // Of symbols that point somewhere: they point the other way where one reads from right to left.
    property bool directed: false

    width: size
    height: size
    sourceSize: Qt.size(size, size)
    source: name.length > 0 ? "image://symbol/" + name + "?" + Theme.hex(color) : ""
    mirror: directed && shell.mirrored
    Accessible.ignored: true
}
