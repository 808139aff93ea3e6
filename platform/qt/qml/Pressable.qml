import QtQuick

// What all buttons have in common: touch, mouse, keyboard and name. It shows nothing but its focus frame.
MouseArea {
    id: pressable

    property string name
    property bool usable: true
    readonly property color paint: usable ? Theme.accent : Theme.faint
    signal activated

    // Not `enabled`: what cannot be used still takes the touches that fall on it.
    activeFocusOnTab: usable
    hoverEnabled: true
    onClicked: activate()
    // A second touch soon after the first one is a press of its own, such as on the next page's back button.
    onDoubleClicked: activate()
    onPressedChanged: if (pressed)
        Theme.keyboard = false

    Accessible.role: Accessible.Button
    Accessible.name: name
    Accessible.focusable: usable
    Accessible.focused: activeFocus
    Accessible.onPressAction: activate()

    Keys.onPressed: event => {
        Theme.keyboard = true
        if (event.key === Qt.Key_Space || event.key === Qt.Key_Return || event.key === Qt.Key_Enter) {
            activate()
            event.accepted = true
        }
    }

    function activate() {
        if (usable)
            activated()
    }

    FocusFrame {
        z: 1
    }
}
