import QtQuick

// The items of a folder, or the results of a search, as rows.
ListView {
    id: rows

    property var list
    property real topSpace: 0
    property bool covered: false
    readonly property bool editing: list?.editing === true
    readonly property int columns: 1
    // Large text gets two lines for details.
    readonly property int detailLines: Theme.textScale > 1.3 ? 2 : 1
    readonly property real rowHeight: Math.max(60, Math.ceil(1.4 * (Theme.body + detailLines * Theme.caption)) + 20)
    readonly property real pictureSize: Math.round(Theme.iconSize * Math.min(Theme.textScale, 1.5))
    // How far rows have made room for their selection circles.
    property real editSpace: editing ? 38 : 0
    property Item openRow: null
    readonly property alias press: press
    readonly property alias dropRow: dropTarget.row

    signal menuRequested(int index, string title, point position)

    objectName: "folderList"
    model: list
    currentIndex: -1
    reuseItems: true
    cacheBuffer: 120
    pixelAligned: true
    boundsBehavior: Flickable.DragAndOvershootBounds
    flickDeceleration: 2200
    maximumFlickVelocity: 6000
    keyNavigationEnabled: false
    highlightFollowsCurrentItem: false
    activeFocusOnTab: true
    focus: true
    onContentYChanged: closeRow()
    onEditingChanged: closeRow()
    onActiveFocusChanged: if (activeFocus && Theme.keyboard)
        keys.arrive()
    Accessible.role: Accessible.List
    Accessible.name: shell.text("Items")

    header: Item {
        height: rows.topSpace
    }

    delegate: FolderRow {
        width: rows.width
        view: rows
    }

    Behavior on editSpace {
        NumberAnimation {
            duration: Theme.normal
            easing.type: Easing.OutCubic
        }
    }

    Keys.onPressed: event => keys.handle(event)

    function closeRow() {
        openRow?.close()
    }

    FolderKeys {
        id: keys

        view: rows
    }

    PressMark {
        id: press
    }

    DropTarget {
        id: dropTarget

        parent: rows
        view: rows
    }

    VisibleRange {
        view: rows
    }

    ScrollTest {
        view: rows
    }

    WheelScroll {
        view: rows
    }

    ScrollThumb {
        parent: rows
        view: rows
    }
}
