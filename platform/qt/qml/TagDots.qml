import QtQuick

// The colours of an item's tags; a ring keeps each apart from what it lies on.
Row {
    id: dots

    required property var tags
    readonly property real size: Math.round(11 * Math.min(Theme.textScale, 1.6))

    spacing: -size * 0.35
    Accessible.ignored: true

    Repeater {
        model: dots.tags.slice(0, 4)

        Rectangle {
            required property var modelData

            width: dots.size
            height: dots.size
            radius: dots.size / 2
            color: modelData.color
            border.color: Theme.ring
            border.width: 1
        }
    }
}
