import QtQuick
import Tessel

// What a folder says when it has no rows to show: that it is being read, that it is empty, or why it cannot be read.
Item {
    id: folderState

    property var list
    readonly property bool failed: list?.state === FolderList.Failed
    readonly property bool bare: (list?.count ?? 0) === 0

    PageState {
        anchors.fill: parent
        visible: folderState.bare && folderState.list?.state === FolderList.Complete
        icon: "image://icon/folder?folder"
        title: shell.text("This folder is empty")
    }

    PageState {
        anchors.fill: parent
        visible: folderState.bare && patience.over && folderState.list?.state === FolderList.Loading
        busy: true
        title: shell.text("Loading…")
    }

    PageState {
        anchors.fill: parent
        visible: folderState.bare && folderState.failed
        symbol: "info"
        title: shell.text("The folder can’t be shown")
        message: folderState.list?.failureText ?? ""
        button: shell.text("Try Again")
        onActivated: folderState.list.retry()
    }

    // Rows that were read before stay; the reason is told below them.
    Rectangle {
        anchors.bottom: parent.bottom
        width: parent.width
        height: visible ? Math.max(again.implicitHeight, reason.implicitHeight + 16) : 0
        visible: folderState.failed && !folderState.bare
        color: Theme.field

        Text {
            id: reason

            anchors.left: parent.left
            anchors.right: again.left
            anchors.leftMargin: Theme.margin
            anchors.verticalCenter: parent.verticalCenter
            text: folderState.list?.failureText ?? ""
            textFormat: Text.PlainText
            font.pixelSize: Theme.caption
            color: Theme.text
            wrapMode: Text.Wrap
            horizontalAlignment: Text.AlignLeft
            Accessible.role: Accessible.AlertMessage
            Accessible.name: text
        }

        TextButton {
            id: again

            objectName: "retryButton"
            anchors.right: parent.right
            anchors.rightMargin: Theme.margin - padding
            anchors.verticalCenter: parent.verticalCenter
            name: shell.text("Try Again")
            onActivated: folderState.list.retry()
        }
    }

    // Most folders are read before one could read a word.
    Timer {
        id: patience

        property bool over: false

        interval: 300
        running: folderState.bare && folderState.list?.state === FolderList.Loading
        onTriggered: over = true
        onRunningChanged: if (running)
            over = false
    }
}
