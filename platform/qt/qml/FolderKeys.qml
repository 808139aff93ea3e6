import QtQuick

// What the keyboard does in a list or grid of items.
QtObject {
    id: keys

    required property var view
    readonly property var list: view.list
    property string typed
    property double typedAt: 0

    // The first item that can be seen becomes the current one, unless there is one.
    function arrive() {
        if (view.count > 0 && (view.currentIndex < 0 || view.currentIndex >= view.count))
            view.currentIndex = Math.max(0, view.indexAt(view.width / view.columns / 2, view.contentY + view.topSpace + 1))
    }

    function handle(event) {
        if (event.modifiers & (Qt.AltModifier | Qt.MetaModifier))
            return
        Theme.keyboard = true
        event.accepted = event.modifiers & Qt.ControlModifier ? control(event) : doneTyping(move(event) || act(event)) || find(event)
    }

    // A key that does something ends what was typed.
    function doneTyping(did) {
        if (did)
            typed = ""
        return did
    }

    function control(event) {
        if (event.key !== Qt.Key_A || !view.editing)
            return false
        list.selectAll()
        return true
    }

    function move(event) {
        const columns = view.columns
        const page = columns * Math.max(1, Math.floor(view.height / (view.cellHeight ?? view.rowHeight)) - 1)
        const onwards = shell.mirrored ? Qt.Key_Left : Qt.Key_Right
        const backwards = shell.mirrored ? Qt.Key_Right : Qt.Key_Left
        switch (event.key) {
        case Qt.Key_Down: return step(columns)
        case Qt.Key_Up: return step(-columns)
        case Qt.Key_PageDown: return step(page)
        case Qt.Key_PageUp: return step(-page)
        case Qt.Key_Home: return show(0)
        case Qt.Key_End: return show(view.count - 1)
        case onwards: return columns > 1 && step(1)
        case backwards: return columns > 1 && step(-1)
        }
        return false
    }

    function act(event) {
        const index = view.currentIndex < view.count ? view.currentIndex : -1
        switch (event.key) {
        case Qt.Key_Backspace: return shell.back()
        case Qt.Key_Return:
        case Qt.Key_Enter: return index >= 0 && (list.press(index), true)
        case Qt.Key_Space: return index >= 0 && !typing() && (view.editing ? list.press(index) : list.perform(index, -1), true)
        case Qt.Key_Delete: return perform(index, 0)
        case Qt.Key_F2: return perform(index, 3)
        case Qt.Key_Menu: return menu(index)
        case Qt.Key_F10: return (event.modifiers & Qt.ShiftModifier) !== 0 && menu(index)
        }
        return false
    }

    function typing() {
        return typed.length > 0 && Date.now() - typedAt < 1000
    }

    // Goes to the next item whose title starts with what is typed without a pause.
    function find(event) {
        if (event.text.length === 0 || event.text < " " || event.text === "/" || typeof list.find !== "function")
            return false
        const goesOn = typing()
        typed = goesOn ? typed + event.text : event.text
        typedAt = Date.now()
        const index = list.find(typed, Math.max(0, view.currentIndex + (goesOn ? 0 : 1)))
        if (index >= 0)
            show(index)
        return true
    }

    function step(distance) {
        if (view.currentIndex < 0 || view.currentIndex >= view.count) {
            arrive()
            return show(view.currentIndex)
        }
        const target = view.currentIndex + distance
        if (Math.abs(distance) === view.columns && (target < 0 || target >= view.count))
            return target < 0 || show(view.currentIndex)
        return show(Math.max(0, Math.min(view.count - 1, target)))
    }

    function show(index) {
        if (index < 0 || index >= view.count)
            return false
        view.currentIndex = index
        view.positionViewAtIndex(index, ListView.Contain)
        if (index < view.columns)
            view.positionViewAtBeginning()
        return true
    }

    function perform(index, code) {
        if (index < 0 || view.editing || !list.actions().some(action => action.code === code))
            return false
        list.perform(index, code)
        return true
    }

    function menu(index) {
        const item = view.currentItem
        if (index < 0 || view.editing || !item)
            return false
        view.menuRequested(index, item.row.title, item.mapToItem(null, item.width / 2, item.height / 2))
        return true
    }
}
