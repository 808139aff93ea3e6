import QtQuick

// The strip at the leading edge from which a page can be dragged aside.
Item {
    id: strip

    readonly property real direction: shell.mirrored ? -1 : 1

    // Distance in points and speed in points a second, both away from the edge.
    signal dragged(real distance)
    signal dropped(real speed)

    width: 20
    Accessible.ignored: true

    DragHandler {
        id: handler

        property real speed: 0

        target: null
        yAxis.enabled: false
        onTranslationChanged: if (active) {
            speed = strip.direction * centroid.velocity.x
            strip.dragged(strip.direction * translation.x)
        }
        onActiveChanged: if (!active)
            strip.dropped(speed)
    }
}
