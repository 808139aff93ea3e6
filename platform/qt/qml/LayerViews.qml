import QtQuick

// Views of the program's own over the pages: all over them, on the card of a peek, or in a popover, which on a phone
// comes from the bottom edge.
FocusScope {
    id: views

    property var presented
    property real presence: 1

    focus: true
    Loader {
        anchors.fill: parent
        focus: true
        active: views.presented ? true : false
        sourceComponent: views.presented?.kind === "peek" ? card : views.presented?.kind !== "popover" ? whole
                         : shell.tablet ? pointing : rising
    }

    Component {
        id: whole

        Item {
            Rectangle {
                y: views.height * (1 - views.presence)
                width: views.width
                height: views.height
                color: views.presented.overContext ? "transparent" : Theme.background

                MouseArea {
                    anchors.fill: parent
                    acceptedButtons: Qt.AllButtons
                }

                NodeHost {
                    focus: true
                    placed: false
                    node: views.presented.root
                }

                Loader {
                    anchors.fill: parent
                    active: views.presented.pages ? true : false
                    focus: active
                    sourceComponent: stack
                }
            }
        }
    }

    Component {
        id: stack

        PageArea {
            stack: views.presented.pages
        }
    }

    Component {
        id: card

        Item {
            PeekCard {
                anchors.centerIn: parent
                presented: views.presented
                presence: views.presence
                size: views.presented.cardSize(views.width, views.height)
            }
        }
    }

    Component {
        id: rising

        Item {
            Panel {
                y: views.height - (height - radius) * views.presence
                width: views.width
                height: Math.min(views.height - 40, views.presented.root?.height ?? 0) + radius

                NodeHost {
                    focus: true
                    placed: false
                    node: views.presented.root
                }
            }
        }
    }

    Component {
        id: pointing

        Popover {
            anchor: views.presented.anchor
            sideways: views.presented.anchorLeftOrRight
            presence: views.presence
            contentWidth: views.presented.root?.width ?? 0
            contentHeight: views.presented.root?.height ?? 0

            NodeHost {
                focus: true
                placed: false
                node: views.presented.root
            }
        }
    }
}
