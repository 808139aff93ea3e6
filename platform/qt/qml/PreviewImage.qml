import QtQuick
import Tessel

// An image: fits, and can be made larger by two fingers, a wheel, a double tap or keys.
PinchArea {
    id: view

    property var preview: null
    property bool covered: false
    readonly property size natural: preview?.size ?? Qt.size(1, 1)
    readonly property real fit: Math.min(1, width / Math.max(1, natural.width), height / Math.max(1, natural.height))
    readonly property real fittedWidth: Math.max(1, natural.width * fit)
    readonly property real fittedHeight: Math.max(1, natural.height * fit)
    readonly property real mostZoom: Math.max(4, 4 / Math.max(fit, 0.0001))
    property real zoom: 1
    property real pinchedFrom: 1

    objectName: "previewImage"
    onPinchStarted: pinchedFrom = zoom
    onPinchUpdated: pinch => zoomTo(pinchedFrom * pinch.scale, pinch.center)
    onPinchFinished: flick.returnToBounds()

    // The point of the view stays where it is.
    function zoomTo(wanted, point) {
        const target = Math.max(1, Math.min(mostZoom, wanted))
        const x = (flick.contentX + point.x - picture.x) / picture.width
        const y = (flick.contentY + point.y - picture.y) / picture.height
        zoom = target
        flick.contentX = within(x * picture.width + picture.x - point.x, flick.contentWidth - flick.width)
        flick.contentY = within(y * picture.height + picture.y - point.y, flick.contentHeight - flick.height)
    }

    function within(value, most) {
        return Math.max(0, Math.min(most, value))
    }

    function zoomAtMiddle(factor) {
        zoomTo(zoom * factor, Qt.point(width / 2, height / 2))
        return true
    }

    function pan(x, y) {
        flick.contentX = within(flick.contentX + x, flick.contentWidth - flick.width)
        flick.contentY = within(flick.contentY + y, flick.contentHeight - flick.height)
        return true
    }

    function handle(event) {
        switch (event.key) {
        case Qt.Key_Plus:
        case Qt.Key_Equal: return zoomAtMiddle(1.5)
        case Qt.Key_Minus: return zoomAtMiddle(1 / 1.5)
        case Qt.Key_0: return zoomAtMiddle(0)
        case Qt.Key_Left: return pan(-60, 0)
        case Qt.Key_Right: return pan(60, 0)
        case Qt.Key_Up: return pan(0, -60)
        case Qt.Key_Down: return pan(0, 60)
        }
        return false
    }

    Flickable {
        id: flick

        objectName: "imageFlick"
        anchors.fill: parent
        contentWidth: Math.max(width, picture.width)
        contentHeight: Math.max(height, picture.height)
        boundsBehavior: Flickable.StopAtBounds
        clip: true

        // What can be seen through.
        Image {
            x: picture.x
            y: picture.y
            width: picture.width
            height: picture.height
            visible: picture.painted
            fillMode: Image.Tile
            horizontalAlignment: Image.AlignLeft
            verticalAlignment: Image.AlignTop
            source: "image://symbol/checker?" + (Theme.dark ? "565c61" : "e3e6e8")
            sourceSize: Qt.size(16, 16)
            Accessible.ignored: true

            Rectangle {
                anchors.fill: parent
                z: -1
                color: Theme.dark ? "#767d83" : "#ffffff"
            }
        }

        DocumentPicture {
            id: picture

            objectName: "picture"
            x: Math.max(0, (flick.width - width) / 2)
            y: Math.max(0, (flick.height - height) / 2)
            width: view.fittedWidth * view.zoom
            height: view.fittedHeight * view.zoom
            preview: view.preview
            fitted: Qt.size(view.fittedWidth, view.fittedHeight)
            sight: Qt.rect(flick.contentX - x, flick.contentY - y, flick.width, flick.height)
            playing: !view.covered && view.visible && shell.active
            Accessible.role: Accessible.Graphic
            Accessible.name: view.preview?.name ?? ""
        }

        TapHandler {
            onDoubleTapped: point => {
                const place = view.mapFromItem(null, point.scenePosition ?? Qt.point(view.width / 2, view.height / 2))
                view.zoomTo(view.zoom > 1.05 ? 1 : Math.max(2.5, 1 / view.fit), place)
            }
        }

        WheelHandler {
            target: null
            acceptedDevices: PointerDevice.Mouse | PointerDevice.TouchPad
            onWheel: event => {
                const place = Qt.point(event.x - flick.contentX, event.y - flick.contentY)
                if (event.pixelDelta.y === 0 || event.modifiers & Qt.ControlModifier)
                    view.zoomTo(view.zoom * Math.pow(1.0018, event.angleDelta.y), place)
                else
                    view.pan(-event.pixelDelta.x, -event.pixelDelta.y)
            }
        }
    }

    ProgressRing {
        anchors.centerIn: parent
        size: 28
        visible: !picture.painted && !picture.failed
    }
}
