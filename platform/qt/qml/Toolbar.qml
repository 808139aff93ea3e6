import QtQuick

// The bar beneath a page. What its flexible spaces may take is shared out among them.
Rectangle {
    id: bar

    required property var page
    readonly property var items: page.toolbarItems
    readonly property int flexibleCount: items.filter(item => item.kind === "flexibleSpace").length
    property real used: 0

    objectName: "toolbar"
    height: shell.toolbarHeight
    color: Theme.bar
    Accessible.role: Accessible.ToolBar
    Accessible.name: shell.text("Toolbar")

    MouseArea {
        anchors.fill: parent
    }

    Row {
        id: row

        x: shell.toolbarMargin
        width: bar.width - 2 * x
        height: parent.height

        Repeater {
            id: entries

            model: bar.items

            BarButton {
                required property var modelData

                item: modelData
                anchors.verticalCenter: parent.verticalCenter
                flexibleWidth: bar.flexibleCount > 0 ? Math.max(0, row.width - bar.used) / bar.flexibleCount : 0
                Component.onCompleted: Qt.callLater(bar.measure)
                onImplicitWidthChanged: if (!flexible)
                    Qt.callLater(bar.measure)
            }
        }
    }

    Hairline {
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: parent.top
    }

    function measure() {
        let sum = 0
        for (let i = 0; i < entries.count; ++i)
            sum += entries.itemAt(i)?.flexible === false ? entries.itemAt(i).implicitWidth : 0
        used = sum
    }
}
