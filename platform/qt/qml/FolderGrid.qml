import QtQuick

// The items of a folder as a grid of thumbnails.
GridView {
    id: grid

    property var list
    property real topSpace: 0
    property bool covered: false
    readonly property bool editing: list?.editing === true
    readonly property real space: width - 2 * (Theme.margin - 8)
    readonly property int columns: Math.max(2, Math.floor(space / ((shell.tablet ? 136 : 112) * Math.min(Theme.textScale, 1.5))))
    readonly property real pictureHeight: Math.round(Math.min(cellWidth - 24, 110 * Math.min(Theme.textScale, 1.4)))
    readonly property alias press: press
    readonly property alias dropRow: dropTarget.row

    signal menuRequested(int index, string title, point position)

    objectName: "folderGrid"
    model: list
    leftMargin: Theme.margin - 8
    rightMargin: Theme.margin - 8
    cellWidth: Math.floor(space / columns)
    cellHeight: pictureHeight + Math.ceil(2.8 * Theme.caption + 1.4 * Theme.tiny) + 24
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
    onActiveFocusChanged: if (activeFocus && Theme.keyboard)
        keys.arrive()
    Accessible.role: Accessible.List
    Accessible.name: shell.text("Items")

    header: Item {
        height: grid.topSpace
    }

    delegate: GridCell {
        width: grid.cellWidth
        height: grid.cellHeight
        view: grid
    }

    Keys.onPressed: event => keys.handle(event)

    FolderKeys {
        id: keys

        view: grid
    }

    PressMark {
        id: press
    }

    DropTarget {
        id: dropTarget

        parent: grid
        view: grid
    }

    VisibleRange {
        view: grid
    }

    ScrollTest {
        view: grid
    }

    WheelScroll {
        view: grid
    }

    ScrollThumb {
        parent: grid
        view: grid
    }
}
