import QtQuick
import Tessel

// Tells a list which of its rows can be seen, at most once a frame, and shows those that it is to begin with.
QtObject {
    id: range

    required property var view
    readonly property var list: view.list
    readonly property bool covered: view.covered
    readonly property real top: view.contentY
    readonly property real height: view.height
    readonly property int count: view.count
    readonly property int columns: view.columns
    readonly property bool complete: list instanceof FolderList && list.state === FolderList.Complete

    onCompleteChanged: Qt.callLater(begin)
    onListChanged: Qt.callLater(tell)
    onCoveredChanged: Qt.callLater(tell)
    onTopChanged: Qt.callLater(tell)
    onHeightChanged: Qt.callLater(tell)
    onCountChanged: Qt.callLater(tell)
    onColumnsChanged: Qt.callLater(tell)

    function begin() {
        const row = complete ? list.takeStartRow() : 0
        if (row > 0)
            view.positionViewAtIndex(row, ListView.Beginning)
    }

    // Also called when it is being taken down, and has no functions of its own any more.
    function tell() {
        if (typeof list?.setVisibleRange !== "function" || typeof rowAt !== "function")
            return
        if (covered || count === 0) {
            list.setVisibleRange(0, 0)
            return
        }
        const bottom = Math.min(top + height, view.originY + view.contentHeight) - 1
        const first = Math.max(0, rowAt(top, 0))
        const last = Math.min(count - 1, rowAt(bottom, 0) + columns - 1)
        if (rowAt(bottom, 0) >= first)
            list.setVisibleRange(first, last + 1 - first)
    }

    // Row at a height and column; -1 where there is none, such as over the header.
    function rowAt(y, column) {
        const cell = view.width / columns
        return view.indexAt((shell.mirrored ? columns - 1 - column : column) * cell + cell / 2, y)
    }
}
