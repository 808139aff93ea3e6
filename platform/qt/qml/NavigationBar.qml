import QtQuick

// The bar over a page: the way back, the title, and what the page offers.
Rectangle {
    id: bar

    required property var page
    // Whether there are buttons beside the title.
    property bool buttons: true
    readonly property var list: page.list
    readonly property real sideWidth: Math.max(leading.width, trailing.width)
    readonly property bool centred: titleText.implicitWidth <= width - 2 * sideWidth - 16

    height: shell.navigationBarHeight
    color: Theme.bar
    Accessible.role: Accessible.ToolBar
    Accessible.name: page.title

    // Keeps touches between the buttons from what lies beneath.
    MouseArea {
        anchors.fill: parent
    }

    Row {
        id: leading

        visible: bar.buttons

        anchors.left: parent.left
        anchors.leftMargin: Theme.margin - 8
        height: parent.height

        BackButton {
            visible: bar.page.canGoBack
            height: parent.height
            previousTitle: bar.page.backTitle
            room: (bar.width - Math.min(titleText.implicitWidth, bar.width * 0.6)) / 2 - Theme.margin
        }

        Repeater {
            model: bar.page.leftItems

            BarButton {
                required property var modelData

                item: modelData
                anchors.verticalCenter: parent.verticalCenter
            }
        }
    }

    // What is being done, over where.
    Text {
        id: promptText

        y: Math.round((bar.height - height - titleText.height) / 2)
        x: titleText.x + (titleText.width - width) / 2
        width: Math.min(implicitWidth, bar.width - leading.width - trailing.width - 2 * Theme.margin)
        visible: text.length > 0
        text: bar.page.prompt
        textFormat: Text.PlainText
        font.pixelSize: Theme.tiny
        color: Theme.secondaryText
        elide: Text.ElideRight
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }

    Text {
        id: titleText

        y: promptText.visible ? promptText.y + promptText.height : Math.round((bar.height - height) / 2)
        x: {
            if (bar.centred)
                return (bar.width - width) / 2
            const before = shell.mirrored ? trailing.width : leading.width
            const after = shell.mirrored ? leading.width : trailing.width
            return before + 8 + Math.max(0, (bar.width - before - after - 16 - width) / 2)
        }
        width: Math.min(implicitWidth, bar.width - leading.width - trailing.width - 2 * Theme.margin)
        text: bar.page.title
        textFormat: Text.PlainText
        font.pixelSize: Theme.title
        font.bold: true
        color: Theme.text
        elide: Text.ElideMiddle
        horizontalAlignment: Text.AlignHCenter
        Accessible.role: Accessible.Heading
        Accessible.name: text
    }

    Row {
        id: trailing

        visible: bar.buttons

        anchors.right: parent.right
        anchors.rightMargin: Theme.margin - 8
        height: parent.height

        SymbolButton {
            objectName: "modeSwitch"
            visible: bar.list !== null && !bar.list.searching
            height: parent.height
            name: bar.list?.thumbnails ? shell.text("Show as List") : shell.text("Show as Thumbnails")
            symbol: bar.list?.thumbnails ? "rows" : "grid"
            onActivated: bar.list.thumbnails = !bar.list.thumbnails
        }

        Repeater {
            model: bar.page.rightItems.length

            // The first one stands at the edge.
            BarButton {
                required property int index

                item: bar.page.rightItems[bar.page.rightItems.length - 1 - index]
                anchors.verticalCenter: parent.verticalCenter
            }
        }
    }

    Hairline {
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.bottom: parent.bottom
    }
}
