import QtQuick
import Tessel

// A document of pages, one below the other.
PinchArea {
    id: view

    property var preview: null
    property bool covered: false
    readonly property size paper: preview?.size ?? Qt.size(1, 1)
    readonly property real usualAspect: paper.height > 0 && paper.width > 0 ? paper.width / paper.height : 0.7
    readonly property real fittedWidth: Math.max(1, Math.min(width - 2 * 8, 900))
    readonly property int current: Math.max(0, pages.indexAt(pages.contentX + pages.contentWidth / 2, pages.contentY + height / 3))
    property real zoom: 1
    property real pinchedFrom: 1

    objectName: "previewPages"
    onPinchStarted: pinchedFrom = zoom
    onPinchUpdated: pinch => zoomTo(pinchedFrom * pinch.scale, pinch.center)

    // The point of the view stays where it is.
    function zoomTo(wanted, point) {
        const before = zoom
        const index = pages.indexAt(pages.contentX + pages.contentWidth / 2, pages.contentY + point.y)
        const page = pages.itemAtIndex(index)
        const part = page ? (pages.contentY + point.y - page.y) / page.height : 0
        zoom = Math.max(1, Math.min(6, wanted))
        pages.forceLayout()
        const now = pages.itemAtIndex(index)
        if (now)
            pages.contentY = now.y + part * now.height - point.y
        const most = Math.max(0, pages.contentWidth - pages.width)
        pages.contentX = Math.max(0, Math.min(most, (pages.contentX + point.x) * zoom / before - point.x))
        pages.returnToBounds()
    }

    function zoomAtMiddle(factor) {
        zoomTo(zoom * factor, Qt.point(width / 2, height / 2))
        return true
    }

    function handle(event) {
        switch (event.key) {
        case Qt.Key_Plus:
        case Qt.Key_Equal: return zoomAtMiddle(1.25)
        case Qt.Key_Minus: return zoomAtMiddle(0.8)
        case Qt.Key_0: return zoomAtMiddle(0)
        case Qt.Key_Down: return scroll.go(pages.contentY + 60, 0), true
        case Qt.Key_Up: return scroll.go(pages.contentY - 60, 0), true
        case Qt.Key_Space:
        case Qt.Key_PageDown: return scroll.go(pages.contentY + height * 0.9, 140), true
        case Qt.Key_PageUp: return scroll.go(pages.contentY - height * 0.9, 140), true
        case Qt.Key_Home: return pages.positionViewAtBeginning(), true
        case Qt.Key_End: return pages.positionViewAtEnd(), true
        }
        return false
    }

    Rectangle {
        anchors.fill: parent
        color: Theme.dark ? "#22272b" : "#dfe3e6"
    }

    ListView {
        id: pages

        objectName: "pageList"
        anchors.fill: parent
        focus: true
        activeFocusOnTab: true
        model: view.preview?.count ?? 0
        contentWidth: Math.max(width, view.fittedWidth * view.zoom + 16)
        flickableDirection: view.zoom > 1 ? Flickable.HorizontalAndVerticalFlick : Flickable.VerticalFlick
        boundsBehavior: Flickable.StopAtBounds
        cacheBuffer: Math.max(0, height / 2)
        spacing: 10
        topMargin: 8
        bottomMargin: 16
        keyNavigationEnabled: false
        highlightFollowsCurrentItem: false
        Accessible.role: Accessible.Document
        Accessible.name: view.preview?.name ?? ""

        delegate: Item {
            id: place

            required property int index
            readonly property real aspect: page.aspect > 0 ? page.aspect : view.usualAspect

            width: pages.contentWidth
            height: view.fittedWidth * view.zoom / aspect

            Rectangle {
                anchors.fill: page
                color: "white"
            }

            Text {
                anchors.centerIn: page
                width: page.width - 32
                visible: page.failed
                text: shell.text("The document is damaged, or is not what its name says.")
                textFormat: Text.PlainText
                font.pixelSize: Theme.body
                color: "#5d666e"
                wrapMode: Text.Wrap
                horizontalAlignment: Text.AlignHCenter
                Accessible.role: Accessible.StaticText
                Accessible.name: text
            }

            DocumentPicture {
                id: page

                objectName: "picture"
                x: (place.width - width) / 2
                width: view.fittedWidth * view.zoom
                height: place.height
                preview: view.preview
                index: place.index
                fitted: Qt.size(view.fittedWidth, view.fittedWidth / place.aspect)
                sight: Qt.rect(pages.contentX - x, pages.contentY - place.y, pages.width, pages.height)
                Accessible.role: Accessible.Graphic
                Accessible.name: view.preview?.pageText(place.index) ?? ""
            }
        }

        WheelScroll {
            id: scroll

            view: pages
            acceptedModifiers: Qt.NoModifier
        }

        WheelHandler {
            target: null
            acceptedModifiers: Qt.ControlModifier
            acceptedDevices: PointerDevice.Mouse | PointerDevice.TouchPad
            onWheel: event => view.zoomTo(view.zoom * Math.pow(1.0018, event.angleDelta.y), Qt.point(event.x - pages.contentX, event.y - pages.contentY))
        }

        TapHandler {
            onDoubleTapped: point => view.zoomTo(view.zoom > 1.05 ? 1 : 2.5, view.mapFromItem(null, point.scenePosition ?? Qt.point(view.width / 2, view.height / 2)))
        }
    }

    PlaceKeeper {
        objectName: "placeKeeper"
        view: pages
        preview: view.preview
    }

    ScrollThumb {
        view: pages
    }

    Rectangle {
        anchors.horizontalCenter: parent.horizontalCenter
        anchors.bottom: parent.bottom
        anchors.bottomMargin: 12
        width: label.implicitWidth + 24
        height: label.implicitHeight + 12
        radius: height / 2
        color: "#cc22272b"
        visible: (view.preview?.count ?? 0) > 1

        Text {
            id: label

            objectName: "pageLabel"
            anchors.centerIn: parent
            text: view.preview?.pageText(view.current) ?? ""
            textFormat: Text.PlainText
            font.pixelSize: Theme.caption
            color: "white"
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
    }
}
