import QtQuick

// A panel that points with an arrow at a rectangle of the window, or stands in the middle without one. What is
// declared in it is its content.
FocusScope {
    id: popover

    property rect anchor
    // The panel lies to the left or right of what it points at where there is room.
    property bool sideways: false
    property real presence: 1
    property real contentWidth: 320
    property real contentHeight: 200
    default property alias content: panel.data

    readonly property real gap: 12
    readonly property bool points: anchor.width > 0 && anchor.height > 0
    readonly property real middleX: anchor.x + anchor.width / 2
    readonly property real middleY: anchor.y + anchor.height / 2
    readonly property bool fitsBelow: anchor.y + anchor.height + gap + contentHeight <= height - 8
    readonly property bool fitsAbove: anchor.y - gap - contentHeight >= 8
    readonly property bool leftOf: anchor.x - gap - contentWidth >= 8
    readonly property bool rightOf: anchor.x + anchor.width + gap + contentWidth <= width - 8
    readonly property bool upright: (fitsBelow || fitsAbove) && !(sideways && (leftOf || rightOf))

    focus: true
    opacity: presence

    function within(value, size, room) {
        return Math.max(8, Math.min(room - size - 8, value))
    }

    Rectangle {
        id: arrow

        visible: popover.points
        width: 18
        height: 18
        rotation: 45
        radius: 2
        color: panel.color
        x: popover.upright ? popover.within(popover.middleX - 9, width + 16, popover.width)
           : popover.leftOf ? panel.x + panel.width - 10 : panel.x - 8
        y: !popover.upright ? popover.within(popover.middleY - 9, height + 16, popover.height)
           : popover.fitsBelow ? panel.y - 8 : panel.y + panel.height - 10
    }

    Panel {
        id: panel

        width: Math.min(popover.contentWidth, popover.width - 16)
        height: Math.min(popover.contentHeight, popover.height - 16)
        x: !popover.points ? (popover.width - width) / 2
           : popover.within(popover.upright ? popover.middleX - width / 2
                            : popover.leftOf ? popover.anchor.x - popover.gap - width
                            : popover.anchor.x + popover.anchor.width + popover.gap, width, popover.width)
        y: !popover.points ? (popover.height - height) / 2
           : popover.within(!popover.upright ? popover.middleY - height / 2
                            : popover.fitsBelow ? popover.anchor.y + popover.anchor.height + popover.gap
                            : popover.anchor.y - popover.gap - height, height, popover.height)
    }
}
