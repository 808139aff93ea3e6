import QtQuick

// A button that is a symbol.
Pressable {
    id: button

    property alias symbol: picture.name
    property alias directed: picture.directed
    property alias color: picture.color

    implicitWidth: Theme.touch
    implicitHeight: Theme.touch

    Symbol {
        id: picture

        anchors.centerIn: parent
        color: button.paint
        opacity: button.pressed && button.usable ? 0.45 : 1
    }
}
