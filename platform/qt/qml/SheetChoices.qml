import QtQuick

// The words of an action sheet and its buttons, one beneath the other.
Flickable {
    id: choices

    property var presented
    property var actions: []
    property real most: 400
    readonly property bool worded: presented.title.length > 0 || presented.message.length > 0

    height: Math.min(most, column.height)
    contentHeight: column.height
    interactive: contentHeight > height
    boundsBehavior: Flickable.StopAtBounds
    clip: interactive

    Column {
        id: column

        width: choices.width

        Item {
            width: 1
            height: choices.worded ? 14 : 0
        }

        AlertText {
            text: choices.presented.title
            font.pixelSize: Theme.caption
            font.bold: true
            color: Theme.secondaryText
        }

        AlertText {
            text: choices.presented.message
            font.pixelSize: Theme.caption
            color: Theme.secondaryText
        }

        Item {
            width: 1
            height: choices.worded ? 14 : 0
        }

        Repeater {
            model: choices.actions

            TextButton {
                id: button

                required property var modelData
                required property int index

                width: choices.width
                height: implicitHeight + 8
                padding: 16
                name: modelData.title
                usable: modelData.enabled
                color: !usable ? Theme.faint : modelData.style === "destructive" ? Theme.destructive : Theme.accent
                onActivated: modelData.press()

                Hairline {
                    anchors.left: parent.left
                    anchors.right: parent.right
                    anchors.top: parent.top
                    visible: button.index > 0 || choices.worded
                }
            }
        }
    }
}
