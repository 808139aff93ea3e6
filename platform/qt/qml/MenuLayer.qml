import QtQuick

// Where the menu of a row appears; nothing is loaded before the first one.
Loader {
    id: menuLayer

    property var list
    property var tracked
    property string title
    property point position

    function open(list, index, title, position) {
        if (index < 0 || list.actions().length === 0)
            return
        menuLayer.list = list
        menuLayer.tracked = list.track(index)
        menuLayer.title = title
        menuLayer.position = position
        active = true
    }

    active: false
    sourceComponent: ActionMenu {
        actions: menuLayer.list.actions()
        title: menuLayer.title
        position: menuLayer.position
        onClosed: menuLayer.active = false
        onChosen: code => {
            const list = menuLayer.list
            const index = menuLayer.tracked.row
            menuLayer.active = false
            if (list && index >= 0)
                list.perform(index, code)
        }
    }
    onLoaded: item.forceActiveFocus()
    onActiveChanged: if (!active)
        list = null
}
