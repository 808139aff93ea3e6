import QtQuick

// One item of a grid: its thumbnail or icon, its name on two lines, and how much it is.
MouseArea {
    id: cell

    required property var row
    required property int index
    required property GridView view
    readonly property string identity: row.title
    // The touch only stops a grid that moves.
    property bool stopping: false
    // What the last touch did.
    property bool opened: false
    readonly property bool current: view.currentIndex === index && Theme.keyboard && view.activeFocus

    objectName: "row"
    acceptedButtons: Qt.LeftButton | Qt.RightButton
    hoverEnabled: true
    pressAndHoldInterval: 500

    Accessible.role: Accessible.ListItem
    Accessible.name: row.accessibleName
    Accessible.selectable: view.editing
    Accessible.selected: row.selected
    Accessible.focusable: true
    Accessible.focused: current
    Accessible.onPressAction: choose()

    preventStealing: dragSource.held
    onPressed: mouse => {
        dragSource.press(cell, mouse)
        stopping = view.moving
        view.press.begin(cell)
        Theme.keyboard = false
        view.forceActiveFocus()
    }
    onPositionChanged: mouse => {
        if (pressed)
            dragSource.move(mouse)
    }
    onClicked: mouse => touched(mouse)
    // A double click opens once, and selects twice.
    onDoubleClicked: mouse => {
        if (view.editing || !opened)
            touched(mouse)
    }
    onReleased: view.press.end()
    onCanceled: view.press.end()
    onPressAndHold: mouse => requestMenu(mouse.x, mouse.y)

    function touched(mouse) {
        opened = false
        if (stopping)
            return
        if (mouse.button === Qt.RightButton)
            requestMenu(mouse.x, mouse.y)
        else
            choose()
    }

    function choose() {
        opened = true
        view.press.flash(cell)
        view.list.press(index)
    }

    function requestMenu(x, y) {
        if (!view.editing)
            view.menuRequested(index, row.title, mapToItem(null, x, y))
    }

    Rectangle {
        anchors.fill: parent
        anchors.margins: 2
        radius: Theme.radius
        color: (cell.row.selected && cell.view.editing) || cell.view.dropRow === cell.index ? Theme.chosen : cell.view.press.item === cell ? Theme.pressed
               : cell.containsMouse ? Theme.hover : "transparent"
        border.color: Theme.accent
        border.width: cell.current ? 2 : 0
    }

    Item {
        id: picture

        y: 8
        anchors.horizontalCenter: parent.horizontalCenter
        width: cell.view.pictureHeight
        height: cell.view.pictureHeight

        Image {
            anchors.centerIn: parent
            visible: thumbnail.item === null || !thumbnail.item.ready
            width: Math.round(parent.width * 0.8)
            height: width
            sourceSize: Qt.size(width, width)
            source: cell.row.iconSource
            opacity: cell.row.inCloud || !cell.row.enabled ? 0.55 : 1
            Accessible.ignored: true
        }

        Loader {
            id: thumbnail

            anchors.fill: parent
            active: cell.row.thumbnailSource.length > 0
            sourceComponent: Thumbnail {
                source: cell.row.thumbnailSource
            }
        }

        DragSource {
            id: dragSource

            anchors.fill: parent
            list: cell.view.list
            index: cell.index
        }

        Loader {
            anchors.right: parent.right
            anchors.bottom: parent.bottom
            active: cell.view.editing
            sourceComponent: SelectionCircle {
                selected: cell.row.selected
            }
        }
    }

    Text {
        id: title

        anchors.top: picture.bottom
        anchors.topMargin: 6
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.leftMargin: 8
        anchors.rightMargin: 8
        text: cell.row.title
        textFormat: Text.PlainText
        font.pixelSize: Theme.caption
        color: cell.row.enabled ? Theme.text : Theme.faint
        wrapMode: Text.Wrap
        maximumLineCount: 2
        elide: Text.ElideRight
        horizontalAlignment: Text.AlignHCenter
        Accessible.ignored: true
    }

    Text {
        anchors.top: title.bottom
        anchors.topMargin: 1
        anchors.left: title.left
        anchors.right: title.right
        text: cell.row.subtitle.split(" · ")[0]
        textFormat: Text.PlainText
        font.pixelSize: Theme.tiny
        color: Theme.secondaryText
        elide: Text.ElideRight
        horizontalAlignment: Text.AlignHCenter
        Accessible.ignored: true
    }

    RowMarks {
        anchors.right: parent.right
        anchors.top: parent.top
        anchors.margins: 8
        row: cell.row
    }
}
