import QtQuick

// Shows a part of content that is larger than itself.
Flickable {
    id: scroll

    required property var node
    // x is counted from the leading edge.
    readonly property real hidden: Math.max(0, contentWidth - width)
    readonly property real wantedX: shell.mirrored ? hidden - (node?.contentX ?? 0) : node?.contentX ?? 0
    readonly property real wantedY: node?.contentY ?? 0
    property bool taking: false

    clip: true
    contentWidth: node?.contentWidth ?? 0
    contentHeight: node?.contentHeight ?? 0
    topMargin: node?.topInset ?? 0
    bottomMargin: node?.bottomInset ?? 0
    leftMargin: (shell.mirrored ? node?.trailingInset : node?.leadingInset) ?? 0
    rightMargin: (shell.mirrored ? node?.leadingInset : node?.trailingInset) ?? 0
    flickableDirection: Flickable.AutoFlickIfNeeded
    boundsBehavior: node?.bounces ? Flickable.DragAndOvershootBounds : Flickable.StopAtBounds
    onWantedXChanged: take()
    onWantedYChanged: take()
    onContentXChanged: tell()
    onContentYChanged: tell()
    Component.onCompleted: take()
    onMovementStarted: motion.stop()
    Accessible.role: Accessible.Pane
    Accessible.name: node?.accessibleName ?? ""

    function take() {
        motion.stop()
        taking = true
        contentX = wantedX
        if (contentY !== wantedY && node?.motion > 0)
            move()
        else
            contentY = wantedY
        taking = false
    }

    function move() {
        motion.to = wantedY
        motion.duration = node.motion
        motion.easing.type = node.easing
        motion.start()
    }

    function tell() {
        if (!taking && !motion.running)
            node?.scrolled(shell.mirrored ? hidden - contentX : contentX, contentY)
    }

    Item {
        width: Math.max(scroll.contentWidth, scroll.width)
        height: Math.max(scroll.contentHeight, scroll.height)

        NodeChildren {
            node: scroll.node
        }
    }

    NumberAnimation {
        id: motion

        target: scroll
        property: "contentY"
    }

    TapHandler {
        parent: scroll
        onTapped: scroll.node?.tap()
    }

    WheelScroll {
        view: scroll
    }

    ScrollThumb {
        parent: scroll
        view: scroll
        visible: needed && opacity > 0 && (scroll.node?.indicators ?? false)
    }
}
