import QtQuick

// Where files may be dropped: on a folder of a list or grid, or beside them.
DropArea {
    id: target

    required property var view
    // The folder that would take them; -1 for the list's own.
    property int row: -1
    property int lookedAt: -2

    anchors.fill: parent
    enabled: typeof view.list?.takes === "function"
    keys: ["text/uri-list"]
    onEntered: drag => {
        lookedAt = -2
        look(drag)
    }
    onPositionChanged: drag => look(drag)
    onExited: row = -1
    onDropped: drop => {
        look(drop)
        const taken = drop.supportedActions & Qt.MoveAction && view.list.takes(drop.urls, row)
        if (taken)
            view.list.take(drop.urls, row)
        if (taken)
            drop.accept(Qt.MoveAction)
        else
            drop.accepted = false
        row = -1
    }

    function look(drag) {
        const index = view.indexAt(drag.x + view.contentX, drag.y + view.contentY)
        if (index === lookedAt)
            return
        lookedAt = index
        row = index >= 0 && view.list.takes(drag.urls, index) ? index : -1
    }
}
