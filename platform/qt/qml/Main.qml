import QtQuick
import QtQuick.Window

// The window: the pages, what lies over them, and the keys that belong to neither.
Window {
    id: window

    width: 375
    height: 667
    minimumWidth: 280
    minimumHeight: 280
    visible: true
    title: shell.applicationTitle
    color: Theme.background

    // Shows what can be done with one row of a list; `position` is in the window's coordinates.
    function showMenu(list, index, title, position) {
        menu.open(list, index, title, position)
    }

    Item {
        id: root

        anchors.fill: parent
        LayoutMirroring.enabled: shell.mirrored
        LayoutMirroring.childrenInherit: true

        Keys.onPressed: event => {
            const back = event.key === Qt.Key_Escape || event.key === Qt.Key_Back || event.key === Qt.Key_Backspace
                       || (event.key === Qt.Key_Left && event.modifiers & Qt.AltModifier)
            if (back && shell.back())
                event.accepted = true
        }

        PageArea {
            id: pages

            anchors.fill: parent
            stack: shell.pages
            enabled: layers.count === 0 && !menu.active
            onMenuRequested: (list, index, title, position) => window.showMenu(list, index, title, position)
        }

        Repeater {
            id: layers

            model: shell.layers

            LayerView {
                anchors.fill: parent
            }

            onCountChanged: if (count === 0)
                pages.takeFocus()
        }

        MenuLayer {
            id: menu

            anchors.fill: parent
            onActiveChanged: if (!active)
                pages.takeFocus()
        }
    }
}
