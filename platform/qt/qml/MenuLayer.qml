import QtQuick

// Where the menu of a row appears; nothing is loaded before the first one.
Loader {
    id: menuLayer

    property var list
    property var tracked

    function open(list, index, title, position) {
        if (index < 0)
            return
        menuLayer.list = list
        menuLayer.tracked = list.track(index)
        setSource("ActionMenu.qml", {"actions": list.menu(), "title": title, "position": position})
        active = true
    }

    function choose(code) {
        const list = menuLayer.list
        const index = tracked.row
        active = false
        if (list && index >= 0)
            list.perform(index, code)
    }

    active: false
    onLoaded: item.forceActiveFocus()
    onActiveChanged: if (!active)
        list = null

    Connections {
        target: menuLayer.item

        function onClosed() {
            menuLayer.active = false
        }

        function onChosen(code) {
            menuLayer.choose(code)
        }
    }
}
