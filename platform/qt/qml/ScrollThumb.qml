import QtQuick

// How much of a list can be seen and where: a bar that fades when nothing moves, and that a mouse can drag.
Item {
    id: thumb

    required property Flickable view
    readonly property real content: view.contentHeight
    readonly property real room: view.height - 4
    readonly property bool needed: view.height > 0 && content > view.height + 1 // a new list has no height yet
    readonly property real length: Math.max(36, room * view.height / Math.max(1, content))
    property real part: (view.contentY - view.originY) / Math.max(1, content - view.height)

    // What goes to a part of the content, where that is more than the view holds; null: the view does.
    property var seek: null

    objectName: "scrollThumb"
    anchors.right: parent.right
    y: 2 + Math.max(0, Math.min(1, part)) * (room - length)
    z: 2
    width: 14
    height: length
    visible: needed && opacity > 0
    opacity: view.moving || mouse.containsMouse || mouse.pressed || rest.running ? 1 : 0
    Accessible.ignored: true

    onPartChanged: if (needed)
        rest.restart()

    Timer {
        id: rest

        interval: 700
    }

    Behavior on opacity {
        NumberAnimation {
            duration: Theme.normal
        }
    }

    Rectangle {
        anchors.right: parent.right
        anchors.rightMargin: 3
        width: mouse.containsMouse || mouse.pressed ? 7 : 3
        height: parent.height
        radius: width / 2
        color: Theme.faint
    }

    MouseArea {
        id: mouse

        property real grip: 0

        anchors.fill: parent
        hoverEnabled: true
        preventStealing: true
        onPressed: event => grip = event.y
        onPositionChanged: event => {
            if (!pressed)
                return
            const top = thumb.y - 2 + event.y - grip
            const part = Math.max(0, Math.min(1, top / Math.max(1, thumb.room - thumb.length)))
            if (thumb.seek)
                thumb.seek(part)
            else
                thumb.view.contentY = thumb.view.originY + part * (thumb.content - thumb.view.height)
        }
    }
}
