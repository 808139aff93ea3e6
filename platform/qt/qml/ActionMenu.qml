import QtQuick

// What can be done with one item: at the finger, or on a phone from the bottom edge.
FocusScope {
    id: menu

    property var actions: []
    property string title
    property point position
    readonly property bool rises: !shell.tablet
    property real presence: 0

    signal chosen(int code)
    signal closed

    focus: true
    objectName: "menu"
    Accessible.role: Accessible.PopupMenu
    Accessible.name: title
    Component.onCompleted: presence = 1
    Keys.onPressed: event => {
        const onwards = event.key === Qt.Key_Down || event.key === Qt.Key_Tab
        const step = onwards ? 1 : event.key === Qt.Key_Up || event.key === Qt.Key_Backtab ? -1 : 0
        if (step !== 0)
            focusEntry(step)
        else if (event.key === Qt.Key_Escape || event.key === Qt.Key_Back)
            closed()
        event.accepted = true
    }

    function focusEntry(step) {
        Theme.keyboard = true
        let focused = step > 0 ? -1 : entries.count
        for (let i = 0; i < entries.count; ++i)
            if (entries.itemAt(i).activeFocus)
                focused = i
        entries.itemAt((focused + step + entries.count) % entries.count).forceActiveFocus()
    }

    Behavior on presence {
        NumberAnimation {
            duration: Theme.quick
            easing.type: Easing.OutCubic
        }
    }

    Rectangle {
        anchors.fill: parent
        color: Theme.dim
        opacity: menu.presence * (menu.rises ? 1 : 0.4)
    }

    MouseArea {
        anchors.fill: parent
        acceptedButtons: Qt.AllButtons
        hoverEnabled: true
        onPressed: menu.closed()
        onWheel: event => event.accepted = true
    }

    Panel {
        id: panel

        width: menu.rises ? menu.width - 16 : Math.min(260 * Math.min(Theme.textScale, 1.5), menu.width - 16)
        height: Math.min(menu.height - 16, column.height + 12)
        opacity: menu.rises ? 1 : menu.presence
        x: menu.rises ? 8 : Math.max(8, Math.min(menu.width - width - 8, menu.position.x - (shell.mirrored ? width : 0)))
        y: menu.rises ? menu.height - (height + 8) * menu.presence
           : Math.max(8, Math.min(menu.height - height - 8, menu.position.y))

        Flickable {
            anchors.fill: parent
            anchors.topMargin: 6
            anchors.bottomMargin: 6
            contentHeight: column.height
            interactive: contentHeight > height
            boundsBehavior: Flickable.StopAtBounds
            clip: interactive

            Column {
                id: column

                width: parent.width

                Text {
                    leftPadding: 18
                    rightPadding: 18
                    topPadding: 8
                    bottomPadding: 8
                    width: parent.width
                    text: menu.title
                    textFormat: Text.PlainText
                    font.pixelSize: Theme.caption
                    color: Theme.secondaryText
                    elide: Text.ElideMiddle
                    horizontalAlignment: Text.AlignLeft
                    Accessible.ignored: true
                }

                Repeater {
                    id: entries

                    model: menu.actions

                    MenuEntry {
                        required property var modelData
                        required property int index

                        width: column.width
                        focus: index === 0
                        name: modelData.title
                        symbol: modelData.symbol
                        destructive: modelData.destructive
                        onActivated: menu.chosen(modelData.code)
                    }
                }
            }
        }
    }
}
