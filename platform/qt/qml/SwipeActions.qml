import QtQuick

// What a row uncovers: what deletes it, outermost, its first other actions, and a way to all of them.
Row {
    id: swipe

    objectName: "swipe"

    property var actions: []
    property bool more: false
    readonly property real buttonWidth: Math.round(74 * Math.min(Theme.textScale, 1.4))

    signal chosen(int code)
    signal moreRequested(point position)

    layoutDirection: Qt.RightToLeft

    function offer(actions, room) {
        const most = Math.max(1, Math.floor((room - 80) / buttonWidth))
        more = actions.length > Math.min(most, 3)
        const ordered = actions.filter(action => action.destructive).concat(actions.filter(action => !action.destructive))
        swipe.actions = more ? ordered.slice(0, Math.min(most, 3) - 1) : ordered
    }

    Repeater {
        model: swipe.actions

        SwipeButton {
            required property var modelData
            required property int index

            width: swipe.buttonWidth
            height: swipe.height
            name: modelData.title
            symbol: modelData.symbol
            color: modelData.destructive ? Theme.swipeDestructive : index % 2 ? Theme.swipeAccent : Theme.swipePlain
            onActivated: swipe.chosen(modelData.code)
        }
    }

    SwipeButton {
        id: moreButton

        visible: swipe.more
        width: swipe.buttonWidth
        height: swipe.height
        name: shell.text("More")
        symbol: "more"
        color: Theme.swipePlain
        onActivated: swipe.moreRequested(mapToItem(null, width / 2, height / 2))
    }
}
