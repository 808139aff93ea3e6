import QtQuick

// Where something that is played has come to, or how loud it is, and a way to change that. It runs in the direction of
// reading.
Item {
    id: slider

    property real seconds: 0
    property real position: 0
    property string name
    property string valueText
    property bool usable: true
    property real dragged: -1
    readonly property real shown: dragged >= 0 ? dragged : position
    readonly property real part: seconds > 0 ? Math.max(0, Math.min(1, shown / seconds)) : 0
    property real step: Math.max(1, seconds / 50)
    signal seek(real position)

    implicitHeight: Theme.touch
    activeFocusOnTab: usable
    Accessible.role: Accessible.Slider
    Accessible.name: name
    Accessible.description: valueText
    Accessible.focusable: usable
    Accessible.focused: activeFocus
    Accessible.onIncreaseAction: go(position + step)
    Accessible.onDecreaseAction: go(position - step)

    function go(wanted) {
        if (usable)
            seek(Math.max(0, Math.min(seconds, wanted)))
        return true
    }

    function at(x) {
        const along = Math.max(0, Math.min(1, x / Math.max(1, width)))
        return (shell.mirrored ? 1 - along : along) * seconds
    }

    function handle(event) {
        const forwards = shell.mirrored ? Qt.Key_Left : Qt.Key_Right
        const backwards = shell.mirrored ? Qt.Key_Right : Qt.Key_Left
        switch (event.key) {
        case forwards: return go(position + step)
        case backwards: return go(position - step)
        case Qt.Key_Home: return go(0)
        case Qt.Key_End: return go(seconds)
        }
        return false
    }

    Keys.onPressed: event => {
        Theme.keyboard = true
        event.accepted = handle(event)
    }

    Rectangle {
        id: groove

        anchors.verticalCenter: parent.verticalCenter
        width: parent.width
        height: 4
        radius: 2
        color: Theme.hairline

        Rectangle {
            x: shell.mirrored ? parent.width - width : 0
            width: parent.width * slider.part
            height: parent.height
            radius: 2
            color: Theme.accent
        }
    }

    Rectangle {
        id: knob

        objectName: "timeKnob"
        x: (shell.mirrored ? 1 - slider.part : slider.part) * (slider.width - width)
        anchors.verticalCenter: parent.verticalCenter
        width: 16
        height: 16
        radius: 8
        color: slider.usable ? Theme.accent : Theme.faint
        scale: touch.pressed ? 1.3 : 1
    }

    MouseArea {
        id: touch

        anchors.fill: parent
        enabled: slider.usable
        preventStealing: true
        onPressed: mouse => {
            Theme.keyboard = false
            slider.dragged = slider.at(mouse.x)
        }
        onPositionChanged: mouse => slider.dragged = slider.at(mouse.x)
        onReleased: {
            slider.go(slider.dragged)
            slider.dragged = -1
        }
        onCanceled: slider.dragged = -1
    }

    FocusFrame {
        z: 1
    }
}
