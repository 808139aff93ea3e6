import QtQuick
import Tessel

// A text, row by row. A very long one lies in the list in parts, which follow what is looked at.
ListView {
    id: view

    property var preview: null
    property bool covered: false
    readonly property var rows: preview?.rows ?? null
    readonly property int base: rows?.base ?? 0
    readonly property int total: rows?.total ?? 0
    readonly property bool isPart: count < total

    objectName: "previewText"
    model: rows
    focus: true
    activeFocusOnTab: true
    pixelAligned: true
    cacheBuffer: 400
    topMargin: 8
    bottomMargin: 16
    boundsBehavior: Flickable.DragAndOvershootBounds
    flickDeceleration: 2200
    maximumFlickVelocity: 8000
    keyNavigationEnabled: false
    highlightFollowsCurrentItem: false
    Accessible.role: Accessible.Document
    Accessible.name: preview?.name ?? ""
    onMovementEnded: follow()
    Keys.onPressed: event => event.accepted = handle(event)

    function firstRow() {
        return Math.max(0, indexAt(width / 2, Math.max(contentY, originY) + 1))
    }

    // Has the part that the list holds go on where it nearly ends.
    function follow() {
        const row = firstRow()
        const isNearEnd = row > count * 0.8 && base + count < total
        const isNearBeginning = row < count * 0.2 && base > 0
        if (!isPart || !(isNearEnd || isNearBeginning))
            return
        const offset = contentY - (itemAtIndex(row)?.y ?? contentY)
        go(base + row)
        contentY += offset
    }

    // Shows a row of the text at the top.
    function go(row) {
        positionViewAtIndex(rows.reach(row), ListView.Beginning)
    }

    function handle(event) {
        const page = height - 2 * Theme.body
        switch (event.key) {
        case Qt.Key_Down: return scroll.go(contentY + 3 * Theme.body, 0), true
        case Qt.Key_Up: return scroll.go(contentY - 3 * Theme.body, 0), true
        case Qt.Key_Space:
        case Qt.Key_PageDown: return scroll.go(contentY + page, 140), follow(), true
        case Qt.Key_PageUp: return scroll.go(contentY - page, 140), follow(), true
        case Qt.Key_Home: return go(0), returnToBounds(), true
        case Qt.Key_End:
            rows.reach(total - 1)
            positionViewAtEnd()
            return true
        }
        return false
    }

    delegate: Text {
        required property string line
        required property int index

        x: Theme.margin
        width: view.width - 2 * Theme.margin
        text: line
        textFormat: Text.PlainText
        font.family: view.preview?.fixedFont ?? ""
        font.pixelSize: Math.round(Theme.body * 0.85)
        lineHeight: 1.15
        color: Theme.text
        wrapMode: Text.Wrap
        renderType: Text.NativeRendering
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }

    PlaceKeeper {
        view: view
        preview: view.preview
        base: view.base
        total: view.total
        show: row => view.go(row)
    }

    WheelScroll {
        id: scroll

        view: view
        onActiveChanged: if (!active)
            view.follow()
    }

    ScrollThumb {
        parent: view
        view: view
        part: view.isPart ? (view.base + view.firstRow() + 0 * view.contentY) / view.total : (view.contentY - view.originY) / Math.max(1, view.contentHeight - view.height)
        seek: view.isPart ? part => view.go(Math.round(part * (view.total - 1))) : null
    }
}
