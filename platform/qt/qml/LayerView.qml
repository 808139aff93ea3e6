import QtQuick
import Tessel

// One thing that lies over the pages: an alert, a sheet, a popover, or views of the program's own.
FocusScope {
    id: view

    required property var model
    readonly property var presented: model.layer
    readonly property bool wide: presented.kind === "views"
    // From 0, not there yet, to 1.
    property real presence: presented.phase === Layer.Entering ? 0 : 1

    objectName: "layer"
    Component.onCompleted: {
        forceActiveFocus()
        follow()
    }
    Keys.onPressed: event => {
        const backwards = event.key === Qt.Key_Backtab
        if (event.key === Qt.Key_Escape || event.key === Qt.Key_Back)
            presented.cancel() || shell.back()
        else if (event.key === Qt.Key_Tab || backwards)
            nextItemInFocusChain(!backwards).forceActiveFocus(backwards ? Qt.BacktabFocusReason : Qt.TabFocusReason)
        Theme.keyboard = true
        event.accepted = true
    }

    Connections {
        target: view.presented

        function onPhaseChanged() {
            view.follow()
        }
    }

    function follow() {
        const comes = presented.phase === Layer.Entering
        if (!comes && presented.phase !== Layer.Leaving) {
            motion.stop()
            presence = 1
        } else if (presented.animated === false) {
            presence = comes ? 1 : 0
            Qt.callLater(end)
        } else {
            motion.to = comes ? 1 : 0
            motion.restart()
        }
    }

    function end() {
        presented?.finished()
    }

    NumberAnimation {
        id: motion

        target: view
        property: "presence"
        duration: Theme.normal
        easing.type: Easing.OutCubic
        onFinished: view.end()
    }

    Rectangle {
        anchors.fill: parent
        visible: !view.wide
        color: Theme.dim
        opacity: view.presence * (view.presented.kind !== "alert" && shell.tablet ? 0.4 : 1)
    }

    // Nothing beneath is touched while this is there.
    MouseArea {
        anchors.fill: parent
        acceptedButtons: Qt.AllButtons
        hoverEnabled: true
        onClicked: view.presented.cancel()
        onWheel: event => event.accepted = true
    }

    Loader {
        anchors.fill: parent
        focus: true
        source: view.presented.kind === "alert" ? "AlertBox.qml" : view.presented.kind === "sheet" ? "ActionSheet.qml" : "LayerViews.qml"
        onLoaded: {
            item.presented = view.presented
            item.presence = Qt.binding(() => view.presence)
        }
    }
}
