import QtQuick

// The buttons of an alert: two that are short enough stand side by side, others one beneath the other.
Grid {
    id: buttons

    property var actions: []
    property real longest: 0
    readonly property int safest: Math.max(actions.findIndex(action => action.style === "cancel"), 0)
    readonly property bool beside: actions.length === 2 && longest <= width / 2
    readonly property real buttonWidth: beside ? width / 2 : width

    columns: beside ? 2 : 1

    Repeater {
        model: buttons.actions

        TextButton {
            id: button

            required property var modelData
            required property int index

            width: buttons.buttonWidth
            height: Math.max(Theme.touch + 2, implicitHeight)
            padding: 12
            focus: index === buttons.safest
            name: modelData.title
            usable: modelData.enabled
            font.bold: modelData.style === "cancel"
            color: !usable ? Theme.faint : modelData.style === "destructive" ? Theme.destructive : Theme.accent
            onActivated: modelData.press()
            onImplicitWidthChanged: buttons.longest = Math.max(buttons.longest, implicitWidth)

            Hairline {
                anchors.left: parent.left
                anchors.right: parent.right
                anchors.top: parent.top
            }

            Rectangle {
                anchors.right: parent.right
                width: 1
                height: parent.height
                visible: buttons.beside && button.index === 0
                color: Theme.hairline
            }
        }
    }
}
