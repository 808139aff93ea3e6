import QtQuick

// Scrolls a list by a wheel, a notch at a time, and by a touchpad exactly as far as the fingers go.
WheelHandler {
    id: wheel

    required property Flickable view
    property real notch: 120
    readonly property real least: view.originY - view.topMargin
    readonly property real most: Math.max(least, view.originY + view.contentHeight + view.bottomMargin - view.height)

    target: null
    acceptedDevices: PointerDevice.Mouse | PointerDevice.TouchPad
    onWheel: event => {
        view.cancelFlick()
        if (event.pixelDelta.y !== 0)
            go(view.contentY - event.pixelDelta.y, 0)
        else
            go((motion.running ? motion.to : view.contentY) - event.angleDelta.y / 120 * notch, 140)
    }

    function go(y, duration) {
        const to = Math.max(least, Math.min(most, y))
        motion.stop()
        if (duration === 0) {
            view.contentY = to
            return
        }
        motion.to = to
        motion.duration = duration
        motion.start()
    }

    readonly property NumberAnimation motion: NumberAnimation {
        target: wheel.view
        property: "contentY"
        easing.type: Easing.OutCubic
    }
}
