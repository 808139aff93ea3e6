import QtQuick

// A question in the middle of the screen.
FocusScope {
    id: alert

    property var presented
    property real presence: 1
    readonly property real boxWidth: Math.min(width - 32, 290 * Math.min(Math.max(1, Theme.textScale * 0.9), 1.5))

    focus: true
    objectName: "alert"
    opacity: presence
    Accessible.role: Accessible.AlertMessage
    Accessible.name: [presented?.title, presented?.message].filter(text => text).join(". ")

    Panel {
        id: panel

        anchors.horizontalCenter: parent.horizontalCenter
        y: Math.max(16, (alert.height - Qt.inputMethod.keyboardRectangle.height - height) / 2)
        width: alert.boxWidth
        height: Math.min(alert.height - 32, body.implicitHeight)
        scale: 1.06 - 0.06 * alert.presence

        Flickable {
            anchors.fill: parent
            anchors.margins: 1
            contentHeight: body.implicitHeight
            interactive: contentHeight > height
            boundsBehavior: Flickable.StopAtBounds
            clip: interactive

            Column {
                id: body

                width: parent.width
                topPadding: 20

                AlertText {
                    text: alert.presented?.title ?? ""
                    font.pixelSize: Math.round(Theme.body * 1.06)
                    font.bold: true
                }

                AlertText {
                    text: alert.presented?.message ?? ""
                    topPadding: 6
                    font.pixelSize: Math.round(Theme.body * 0.88)
                    color: Theme.secondaryText
                }

                Repeater {
                    model: alert.presented?.fields ?? []

                    Item {
                        required property var modelData

                        width: body.width
                        height: field.height + 14

                        NodeHost {
                            id: field

                            y: 14
                            x: 16
                            width: body.width - 32
                            height: Math.max(36, Theme.body * 1.4 + 14)
                            placed: false
                            framed: false
                            node: parent.modelData
                        }
                    }
                }

                Item {
                    width: body.width
                    height: visible ? alert.presented.content.height + 12 : 0
                    visible: alert.presented?.content ? true : false

                    Binding {
                        target: alert.presented
                        when: alert.presented?.content ? true : false
                        property: "contentWidth"
                        value: body.width - 32
                    }

                    NodeHost {
                        anchors.horizontalCenter: parent.horizontalCenter
                        y: 12
                        placed: false
                        node: alert.presented?.content ?? null
                    }
                }

                Item {
                    width: 1
                    height: 20
                }

                AlertButtons {
                    width: body.width
                    actions: alert.presented?.actions ?? []
                }
            }
        }
    }
}
