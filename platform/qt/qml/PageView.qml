import QtQuick
import Tessel

// One page of the stack with its bars.
FocusScope {
    id: view

    required property var page
    required property int index
    required property Item area
    readonly property bool onTop: page.phase === Page.Shown || page.phase === Page.Entering
    readonly property bool moving: area.mover === view
    readonly property bool beneath: area.mover !== null && index === area.mover.index - 1
    readonly property real offset: moving ? area.slide * width : beneath ? -0.3 * (1 - area.slide) * width : 0

    signal menuRequested(var list, int index, string title, point position)

    objectName: "page"
    x: shell.mirrored ? -offset : offset
    visible: onTop || moving || beneath
    enabled: onTop
    focus: onTop
    Accessible.role: Accessible.Pane
    Accessible.name: page.title

    Keys.onPressed: event => {
        if (content.item?.handle)
            content.item.handle(event)
    }
    Component.onCompleted: follow()
    Component.onDestruction: area.rest(view)

    Connections {
        target: view.page

        function onPhaseChanged() {
            view.follow()
        }
    }

    function follow() {
        const phase = page.phase
        if (phase === Page.Entering || phase === Page.Leaving) {
            if (!page.animated)
                Qt.callLater(end)
            else if (phase === Page.Entering)
                area.enter(view)
            else
                area.leave(view)
        } else {
            area.rest(view)
        }
        if (onTop && area.enabled)
            forceActiveFocus()
    }

    function end() {
        page?.finished()
    }

    Rectangle {
        anchors.fill: parent
        color: Theme.background
    }

    NavigationBar {
        id: navigationBar

        page: view.page
        buttons: view.area.live
        width: view.width
        z: 1
    }

    Loader {
        id: content

        y: view.page.underBars ? 0 : navigationBar.height
        width: view.width
        height: (view.page.underBars ? view.height : toolbar.y) - y
        focus: true
        source: ({ list: "FolderPage.qml", preview: "PreviewPage.qml", views: "ViewPage.qml" })[view.page.kind] ?? "UnavailablePage.qml"
        onLoaded: item.page = Qt.binding(() => view.page)

        Binding {
            target: content.item
            property: "covered"
            value: !view.visible
        }

        Connections {
            target: content.item
            ignoreUnknownSignals: true

            function onMenuRequested(list, index, title, position) {
                view.menuRequested(list, index, title, position)
            }
        }
    }

    // A second click that was meant for the page before does not fall on one that is still on its way.
    MouseArea {
        anchors.fill: content
        visible: view.moving
    }

    Loader {
        id: toolbar

        y: view.page.toolbarHidden ? view.height : view.height - height
        width: view.width
        z: 1
        active: !view.page.toolbarHidden
        sourceComponent: Toolbar {
            page: view.page
        }
    }

    // The shade of a page that another one slides over.
    Rectangle {
        anchors.fill: parent
        z: 2
        visible: view.beneath
        color: "black"
        opacity: 0.12 * (1 - view.area.slide)
    }

    Rectangle {
        x: shell.mirrored ? view.width : -width
        z: 2
        width: 1
        height: view.height
        visible: view.moving
        color: Theme.hairline
    }

    EdgeSwipe {
        id: edge

        anchors.left: parent.left
        z: 3
        height: view.height
        enabled: view.page.canGoBack && view.page.phase === Page.Shown
        onDragged: distance => view.area.drag(view, distance)
        onDropped: speed => view.area.drop(view, speed)
    }
}
