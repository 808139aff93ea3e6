import QtQuick

// A look at an item. Pressing the card opens the item; its content cannot be touched.
FocusScope {
    id: card

    property var presented
    property real presence: 1
    property size size

    objectName: "peek"
    width: size.width
    height: size.height
    scale: 0.9 + 0.1 * presence
    opacity: presence
    focus: true
    Accessible.role: Accessible.Button
    Accessible.name: presented.title
    Accessible.onPressAction: presented.pop()
    Keys.onPressed: event => {
        event.accepted = event.key === Qt.Key_Return || event.key === Qt.Key_Enter || event.key === Qt.Key_Space
        if (event.key === Qt.Key_Space)
            presented.cancel()
        else if (event.accepted)
            presented.pop()
    }

    Panel {
        anchors.fill: parent
        radius: 6
    }

    PageArea {
        anchors.fill: parent
        anchors.margins: 2
        clip: true
        enabled: false
        live: false
        stack: card.presented.pages
    }

    MouseArea {
        anchors.fill: parent
        onClicked: card.presented.pop()
    }
}
