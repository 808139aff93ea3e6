import QtQuick
import Tessel

// Scrolls a list to and fro when the program asks for it, and tells how long its frames took.
FrameAnimation {
    id: test

    required property var view
    property int frames: 0
    property int step: 0
    property var times: []

    readonly property Connections request: Connections {
        target: test.view.list instanceof FolderList ? test.view.list : null

        function onScrollTestBegan(frames, delta) {
            test.times = []
            test.frames = frames
            test.step = delta
            test.restart()
        }
    }

    onTriggered: {
        const most = Math.max(view.originY, view.originY + view.contentHeight - view.height)
        if (currentFrame > 0)
            times.push(frameTime * 1000)
        if (view.contentY + step > most || view.contentY + step < view.originY)
            step = -step
        view.contentY = Math.max(view.originY, Math.min(most, view.contentY + step))
        if (times.length < frames)
            return
        stop()
        view.list.endScrollTest(times)
    }
}
