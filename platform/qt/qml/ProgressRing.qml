import QtQuick

// How far something is: a ring that fills, or, where that is not known, one that turns as long as it can be seen.
Item {
    id: ring

    // From 0 to 1; below that it is not known.
    property real value: -1
    property real size: 18
    readonly property real shownValue: value < 0 ? 0.3 : value

    width: size
    height: size
    onShownValueChanged: canvas.requestPaint()
    Accessible.role: Accessible.ProgressBar
    Accessible.name: value < 0 ? shell.text("Loading…") : Math.round(100 * value) + " %"

    Canvas {
        id: canvas

        readonly property color track: Theme.hairline
        readonly property color filled: Theme.accent

        anchors.fill: parent
        onFilledChanged: requestPaint()
        onPaint: {
            const line = Math.max(2, width / 9)
            const middle = width / 2
            const start = -Math.PI / 2
            const context = getContext("2d")
            context.clearRect(0, 0, width, height)
            context.lineWidth = line
            context.strokeStyle = track
            context.beginPath()
            context.arc(middle, middle, middle - line / 2, 0, 2 * Math.PI)
            context.stroke()
            context.strokeStyle = filled
            context.beginPath()
            context.arc(middle, middle, middle - line / 2, start, start + 2 * Math.PI * ring.shownValue)
            context.stroke()
        }

        RotationAnimator on rotation {
            running: ring.value < 0 && ring.visible
            from: 0
            to: 360
            duration: 900
            loops: Animation.Infinite
        }
    }
}
