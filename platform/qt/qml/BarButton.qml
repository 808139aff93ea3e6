import QtQuick

// One entry of a navigation bar or toolbar: words, a symbol, a space or a view of the program's own.
Item {
    id: entry

    required property var item
    // What a flexible space is given by its bar.
    property real flexibleWidth: 0
    readonly property bool flexible: item.kind === "flexibleSpace"

    objectName: "barItem"
    implicitWidth: flexible ? flexibleWidth : item.kind === "fixedSpace" ? item.width : loader.implicitWidth
    implicitHeight: Math.max(1, loader.implicitHeight) // a row leaves out what has no height

    Loader {
        id: loader

        sourceComponent: entry.item.kind === "custom" ? custom : entry.item.kind !== "plain" ? null
                         : entry.item.symbol.length > 0 ? symbolic : worded
    }

    Component {
        id: worded

        TextButton {
            name: entry.item.title
            usable: entry.item.enabled
            font.bold: entry.item.prominent
            onActivated: entry.item.press()
        }
    }

    Component {
        id: symbolic

        SymbolButton {
            name: entry.item.title
            symbol: entry.item.symbol
            usable: entry.item.enabled
            onActivated: entry.item.press()
        }
    }

    Component {
        id: custom

        Item {
            // A button is as far from its neighbours as words are.
            readonly property real padding: entry.item.view?.kind === "button" ? 8 : 0

            implicitWidth: host.width + 2 * padding
            implicitHeight: host.height

            NodeHost {
                id: host

                x: parent.padding
                node: entry.item.view
                placed: false
            }
        }
    }
}
