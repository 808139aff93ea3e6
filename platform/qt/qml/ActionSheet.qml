import QtQuick

// A choice that comes from the bottom edge of a phone, with its way out apart, or that on a tablet points at what it
// is about.
FocusScope {
    id: sheet

    property var presented
    property real presence: 1
    readonly property bool floats: shell.tablet

    focus: true
    objectName: "sheet"
    Accessible.role: Accessible.Dialog
    Accessible.name: presented?.title || presented?.message || shell.text("Choose")

    Loader {
        anchors.fill: parent
        focus: true
        active: sheet.presented !== undefined
        sourceComponent: sheet.floats ? floating : rising
    }

    Component {
        id: rising

        FocusScope {
            focus: true

            Column {
                x: 8
                y: parent.height - (height + 8) * sheet.presence
                width: parent.width - 16
                spacing: 8

                Panel {
                    width: parent.width
                    height: choices.height

                    SheetChoices {
                        id: choices

                        width: parent.width
                        most: sheet.height - 140
                        presented: sheet.presented
                        actions: sheet.presented.actions.filter(action => action.style !== "cancel")
                    }
                }

                Repeater {
                    model: sheet.presented.actions.filter(action => action.style === "cancel")

                    Panel {
                        required property var modelData

                        width: parent.width
                        height: cancel.implicitHeight + 8

                        TextButton {
                            id: cancel

                            anchors.fill: parent
                            focus: true
                            name: parent.modelData.title
                            font.bold: true
                            onActivated: parent.modelData.press()
                        }
                    }
                }
            }
        }
    }

    Component {
        id: floating

        Popover {
            anchor: sheet.presented.anchor
            sideways: sheet.presented.anchorLeftOrRight
            presence: sheet.presence
            contentWidth: Math.min(320 * Math.min(Theme.textScale, 1.5), sheet.width - 40)
            contentHeight: choices.height

            SheetChoices {
                id: choices

                width: parent.width
                most: sheet.height - 120
                presented: sheet.presented
                // A touch beside a popover says the same as its way out, unless there is nothing to point at.
                actions: sheet.presented.actions.filter(action => action.style !== "cancel" || sheet.presented.anchor.width <= 0)
            }
        }
    }
}
