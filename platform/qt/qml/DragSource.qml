import QtQuick

// What a mouse takes hold of to drag an item of a list or grid elsewhere: a part of the area that is pressed.
Item {
    id: source

    required property var list
    required property int index
    // The mouse holds it, and has not moved far enough yet.
    property bool held: false
    property point origin

    Drag.dragType: Drag.Automatic
    Drag.supportedActions: Qt.MoveAction | Qt.CopyAction
    Drag.proposedAction: Qt.MoveAction

    // Fingers scroll and swipe instead.
    function press(area, mouse) {
        const isMouse = mouse.source === Qt.MouseEventNotSynthesized && mouse.button === Qt.LeftButton
        held = isMouse && typeof list?.dragged === "function" && contains(mapFromItem(area, mouse.x, mouse.y))
        origin = Qt.point(mouse.x, mouse.y)
    }

    // Comes back when what is dragged has been let go of.
    function move(mouse) {
        if (!held || Math.abs(mouse.x - origin.x) + Math.abs(mouse.y - origin.y) < 10)
            return
        held = false
        Drag.mimeData = list.dragged(index)
        if (Object.keys(Drag.mimeData).length === 0)
            return
        Drag.active = true
        Drag.active = false
    }
}
