import QtQuick

// Has a preview's list begin at the place that the preview knows, and the preview know where the list comes to: a row
// of the whole, and the part of it that has gone by.
Item {
    id: keeper

    required property ListView view
    property var preview: null
    // Of the whole: where the list's rows begin in it, how many there are, and what brings one of them to the top.
    property int base: 0
    property int total: view.count
    property var show: row => view.positionViewAtIndex(row, ListView.Beginning)

    // Where to go as soon as there is that row; where the list was when its width changed.
    property real wanted: 0
    property real held: -1
    property real last: 0 // also when the preview is covered, and knows of none

    visible: false
    onPreviewChanged: {
        wanted = preview?.place() ?? 0
        Qt.callLater(arrive)
    }
    onTotalChanged: Qt.callLater(arrive)

    function go(place) {
        const row = Math.floor(place)
        show(row)
        view.contentY += (place - row) * (view.itemAtIndex(row - base)?.height ?? 0)
        view.returnToBounds()
    }

    function arrive() {
        if (wanted <= 0 || total <= wanted || view.height <= 0)
            return
        const place = wanted
        wanted = 0
        go(place)
    }

    function hold() {
        if (held < 0)
            held = last || (preview?.place() ?? 0)
        Qt.callLater(letGo)
    }

    function letGo() {
        const place = held
        held = -1
        if (place > 0 && wanted <= 0)
            go(place)
    }

    function tell() {
        if (held >= 0 || view.height <= 0)
            return
        const x = view.contentX + view.width / 2
        const top = Math.max(view.contentY, view.originY) + 1
        const found = view.indexAt(x, top)
        const index = found < 0 ? view.indexAt(x, top + view.spacing) : found
        const row = view.itemAtIndex(index)
        if (!row || (wanted > 0 && index === 0))
            return
        wanted = 0 // someone has gone elsewhere
        last = base + index + Math.max(0, Math.min(0.999, (top - 1 - row.y) / Math.max(1, row.height)))
        preview?.setPlace(last)
    }

    Connections {
        target: keeper.view

        function onHeightChanged() {
            keeper.arrive()
        }
        function onWidthChanged() {
            keeper.hold()
        }
        function onContentYChanged() {
            keeper.tell()
        }
    }
}
