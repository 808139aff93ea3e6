import QtQuick

// One item of a list: picture, title, details and marks. Dragged sideways it uncovers what can be done with it.
MouseArea {
    id: area

    required property var row
    required property int index
    required property ListView view
    readonly property real sign: shell.mirrored ? -1 : 1
    readonly property bool current: view.currentIndex === index && Theme.keyboard && view.activeFocus
    readonly property bool open: content.x !== 0
    readonly property string identity: row.title
    property real pressX: 0
    // The touch only stops a list that moves.
    property bool stopping: false
    // What the last touch did.
    property bool opened: false

    objectName: "row"
    height: view.rowHeight
    acceptedButtons: Qt.LeftButton | Qt.RightButton
    hoverEnabled: true
    pressAndHoldInterval: 500
    preventStealing: dragSource.held
    drag.target: view.editing || dragSource.held ? null : content
    drag.axis: Drag.XAxis
    drag.minimumX: shell.mirrored ? 0 : -actions.width
    drag.maximumX: shell.mirrored ? actions.width : 0

    Accessible.role: Accessible.ListItem
    Accessible.name: row.accessibleName
    Accessible.selectable: view.editing
    Accessible.selected: row.selected
    Accessible.focusable: true
    Accessible.focused: current
    Accessible.onPressAction: choose()

    onPressed: mouse => {
        motion.stop()
        dragSource.press(area, mouse)
        pressX = mouse.x
        stopping = view.moving
        view.press.begin(area)
        Theme.keyboard = false
        view.forceActiveFocus()
        if (view.openRow !== area)
            view.closeRow()
    }
    onPositionChanged: mouse => {
        if (pressed && dragSource.held)
            dragSource.move(mouse)
        else if (pressed && !view.editing && Math.abs(mouse.x - pressX) > 4)
            actions.active = true
    }
    onClicked: mouse => touched(mouse)
    // A double click opens once, and selects twice.
    onDoubleClicked: mouse => {
        if (view.editing || !opened)
            touched(mouse)
    }
    onPressAndHold: mouse => {
        if (!open)
            requestMenu(mouse.x, mouse.y)
    }
    onReleased: settle()
    onCanceled: settle()
    onIdentityChanged: if (open)
        close()
    ListView.onPooled: {
        reset()
        visible = false // the list only stops painting it, and those who listen to the screen would still find it
    }
    ListView.onReused: visible = true

    function touched(mouse) {
        opened = false
        if (open)
            close()
        else if (stopping)
            return
        else if (mouse.button === Qt.RightButton)
            requestMenu(mouse.x, mouse.y)
        else
            choose()
    }

    // Comes to rest open or closed, whichever is nearer.
    function settle() {
        view.press.end()
        if (open)
            slideTo(Math.abs(content.x) > actions.width * 0.4 ? -sign * actions.width : 0)
    }

    function choose() {
        opened = true
        view.press.flash(area)
        view.list.press(index)
    }

    function slideTo(x) {
        view.openRow = x !== 0 ? area : view.openRow === area ? null : view.openRow
        motion.to = x
        motion.restart()
    }

    function close() {
        slideTo(0)
    }

    function reset() {
        motion.stop()
        content.x = 0
        actions.active = false
        if (view.openRow === area)
            view.openRow = null
    }

    function requestMenu(x, y) {
        if (!view.editing)
            view.menuRequested(index, row.title, mapToItem(null, x, y))
    }

    NumberAnimation {
        id: motion

        target: content
        property: "x"
        duration: Theme.normal
        easing.type: Easing.OutCubic
        onFinished: if (content.x === 0)
            actions.active = false
    }

    Rectangle {
        id: content

        width: area.width
        height: area.height
        color: (area.row.selected && area.view.editing) || area.view.dropRow === area.index ? Theme.chosen
               : area.view.press.item === area && !area.open ? Theme.pressed
               : area.containsMouse && !area.pressed ? Theme.hover : "transparent"
        border.color: Theme.accent
        border.width: area.current ? 2 : 0

        Loader {
            anchors.verticalCenter: parent.verticalCenter
            anchors.left: parent.left
            anchors.leftMargin: Theme.margin + area.view.editSpace - 38
            active: area.view.editSpace > 0
            sourceComponent: SelectionCircle {
                selected: area.row.selected
            }
        }

        RowPicture {
            id: picture

            anchors.left: parent.left
            anchors.leftMargin: Theme.margin + area.view.editSpace
            anchors.verticalCenter: parent.verticalCenter
            size: area.view.pictureSize
            row: area.row
            opacity: area.row.inCloud || !area.row.enabled ? 0.55 : 1

            DragSource {
                id: dragSource

                anchors.fill: parent
                list: area.view.list
                index: area.index
            }
        }

        Text {
            id: title

            anchors.left: picture.right
            anchors.right: marks.left
            anchors.leftMargin: Theme.spacing
            anchors.rightMargin: 8
            y: Math.round((parent.height - height - (subtitle.visible ? subtitle.height : 0)) / 2)
            text: area.row.title
            textFormat: Text.PlainText
            font.pixelSize: Theme.body
            color: area.row.enabled ? Theme.text : Theme.faint
            elide: Text.ElideMiddle
            horizontalAlignment: Text.AlignLeft
            Accessible.ignored: true
        }

        Text {
            id: subtitle

            anchors.left: title.left
            anchors.right: area.view.detailLines > 1 ? parent.right : title.right
            anchors.rightMargin: area.view.detailLines > 1 ? Theme.margin : 0
            anchors.top: title.bottom
            visible: text.length > 0
            text: area.view.detailLines > 1 ? Theme.lines(area.row.subtitle) : area.row.subtitle
            textFormat: Text.PlainText
            font.pixelSize: Theme.caption
            color: Theme.secondaryText
            elide: Text.ElideRight
            maximumLineCount: area.view.detailLines
            wrapMode: maximumLineCount > 1 ? Text.Wrap : Text.NoWrap
            horizontalAlignment: Text.AlignLeft
            Accessible.ignored: true
        }

        Loader {
            id: marks

            readonly property bool chevron: area.row.opensList && area.row.enabled && !area.view.editing

            anchors.right: parent.right
            anchors.rightMargin: Theme.margin
            // Beside large text they leave the details their whole line.
            anchors.verticalCenter: area.view.detailLines > 1 ? title.verticalCenter : parent.verticalCenter
            width: active ? implicitWidth : 0
            active: chevron || area.row.inCloud || area.row.progress >= 0 || area.row.tags.length > 0
            sourceComponent: RowMarks {
                row: area.row
                chevron: marks.chevron
            }
        }

        Hairline {
            anchors.left: title.left
            anchors.right: parent.right
            anchors.bottom: parent.bottom
        }
    }

    Loader {
        id: actions

        x: content.x + area.sign * area.width + (shell.mirrored ? area.width - width : 0)
        height: area.height
        active: false
        source: "SwipeActions.qml"
        onLoaded: {
            item.offer(area.view.list.actions(), area.width)
            item.chosen.connect(code => {
                area.close()
                area.view.list.perform(area.index, code)
            })
            item.moreRequested.connect(position => {
                area.close()
                area.view.menuRequested(area.index, area.row.title, position)
            })
        }
    }
}
