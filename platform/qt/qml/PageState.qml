import QtQuick

// Says in the middle of a page why it shows nothing else: a symbol, words, and a way on where there is one.
Item {
    id: pageState

    property alias symbol: picture.name
    property alias icon: image.source
    property alias title: heading.text
    property alias message: detail.text
    property string button
    property bool busy: false

    signal activated

    Column {
        anchors.centerIn: parent
        anchors.verticalCenterOffset: -parent.height * 0.05
        width: Math.min(parent.width - 2 * Theme.margin - 16, 400 * Theme.textScale)
        spacing: 10

        Symbol {
            id: picture

            anchors.horizontalCenter: parent.horizontalCenter
            visible: name.length > 0
            size: 52
            color: Theme.faint
        }

        Image {
            id: image

            anchors.horizontalCenter: parent.horizontalCenter
            visible: source.toString().length > 0
            sourceSize: Qt.size(64, 64)
            opacity: 0.5
            Accessible.ignored: true
        }

        ProgressRing {
            anchors.horizontalCenter: parent.horizontalCenter
            visible: pageState.busy
            size: 28
        }

        Text {
            id: heading

            width: parent.width
            visible: text.length > 0
            textFormat: Text.PlainText
            font.pixelSize: Theme.heading
            font.bold: !pageState.busy
            color: pageState.busy ? Theme.secondaryText : Theme.text
            wrapMode: Text.Wrap
            horizontalAlignment: Text.AlignHCenter
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }

        Text {
            id: detail

            width: parent.width
            visible: text.length > 0
            textFormat: Text.PlainText
            font.pixelSize: Theme.body
            color: Theme.secondaryText
            wrapMode: Text.Wrap
            horizontalAlignment: Text.AlignHCenter
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }

        TextButton {
            objectName: "retryButton"
            anchors.horizontalCenter: parent.horizontalCenter
            visible: pageState.button.length > 0
            name: pageState.button
            font.bold: true
            onActivated: pageState.activated()
        }
    }
}
