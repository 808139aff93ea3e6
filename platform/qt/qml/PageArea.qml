import QtQuick
import Tessel

// The stack of pages, and the one motion that it may be in: a page that comes, goes, or is dragged aside.
Item {
    id: pageArea

    // The pages, bottom to top.
    property var stack: null
    // Whether the pages can be used, and are not only looked at.
    property bool live: true

    signal menuRequested(var list, int index, string title, point position)

    // How far the page that moves is out of its place: 0 in place, 1 out of sight.
    property real slide: 0
    property PageView mover: null

    function takeFocus() {
        for (let i = views.count - 1; i >= 0; --i) {
            const view = views.itemAt(i)
            if (view && view.onTop) {
                view.forceActiveFocus()
                return
            }
        }
    }

    function enter(view) {
        slide = 1
        move(view, 0)
    }

    // Goes on from where a finger has left the page.
    function leave(view) {
        if (mover !== view)
            slide = 0
        move(view, 1)
    }

    function move(view, target) {
        motion.stop()
        mover = view
        motion.to = target
        motion.duration = Theme.slide * Math.max(0.4, Math.abs(target - slide))
        motion.start()
    }

    function rest(view) {
        if (mover !== view)
            return
        motion.stop()
        mover = null
        slide = 0
    }

    function drag(view, distance) {
        motion.stop()
        mover = view
        slide = Math.max(0, Math.min(1, distance / width))
    }

    // The pages go back when the finger let go beyond a third of the way, or fast.
    function drop(view, speed) {
        const goes = speed > 500 || (slide > 1 / 3 && speed > -100)
        if (!goes || !shell.back() || view.page.phase === Page.Shown)
            move(view, 0)
    }

    Repeater {
        id: views

        model: pageArea.stack

        PageView {
            area: pageArea
            width: pageArea.width
            height: pageArea.height
            onMenuRequested: (list, index, title, position) => pageArea.menuRequested(list, index, title, position)
        }
    }

    NumberAnimation {
        id: motion

        target: pageArea
        property: "slide"
        easing.type: Easing.OutCubic
        onFinished: {
            const view = pageArea.mover
            if (view)
                view.end()
            pageArea.rest(view)
        }
    }
}
