import QtQuick
import Tessel

// A folder: the field to search in it, its items as rows or as a grid, the results of a search, and what is said when
// there is nothing to show.
FocusScope {
    id: folderPage

    property var page
    property bool covered: false
    readonly property var list: page?.list ?? null
    readonly property Item view: viewLoader.item
    readonly property bool showsResults: (list?.searching ?? false) && list.searchText.length > 0
    readonly property real searchHeight: list?.showsSearch ? search.implicitHeight : 0

    signal menuRequested(var list, int index, string title, point position)

    readonly property string viewFile: !list ? "" : list.thumbnails ? "FolderGrid.qml" : "FolderRows.qml"

    focus: true
    onCoveredChanged: list?.setCovered(covered)
    onShowsResultsChanged: if (!showsResults && activeFocus && !search.hasFocus)
        Qt.callLater(focusView)
    onViewFileChanged: viewLoader.setSource(viewFile, {"list": list, "topSpace": searchHeight, "covered": covered})

    function handle(event) {
        if (event.key === Qt.Key_Escape && list?.searching) {
            list.endSearch()
            event.accepted = true
            return
        }
        const find = event.key === Qt.Key_F && event.modifiers & Qt.ControlModifier
        if (searchHeight > 0 && (find || event.text === "/")) {
            search.begin()
            event.accepted = true
        }
    }

    SearchField {
        id: search

        y: folderPage.list?.searching || hasFocus || !folderPage.view ? 0
           : -Math.max(0, Math.min(height, folderPage.view.contentY - folderPage.view.originY))
        z: 1
        width: parent.width
        height: implicitHeight
        visible: folderPage.searchHeight > 0
        list: folderPage.list
        onDone: folderPage.focusView()
    }

    Loader {
        id: viewLoader

        anchors.fill: parent
        focus: true
        visible: !folderPage.showsResults
        onLoaded: folderPage.prepare(item)
    }

    Loader {
        id: stateLoader

        anchors.fill: parent
        anchors.topMargin: folderPage.searchHeight
        active: !folderPage.showsResults && folderPage.list !== null
                && (folderPage.list.count === 0 || folderPage.list.state === FolderList.Failed)
        source: "FolderState.qml"
        onLoaded: item.list = Qt.binding(() => folderPage.list)
    }

    Loader {
        id: resultsLoader

        anchors.fill: parent
        anchors.topMargin: folderPage.searchHeight
        active: folderPage.showsResults
        source: "SearchResults.qml"
        onLoaded: {
            item.list = Qt.binding(() => folderPage.list)
            item.menuRequested.connect(folderPage.menuRequested)
        }
    }

    function prepare(item) {
        item.list = Qt.binding(() => folderPage.list)
        item.topSpace = Qt.binding(() => folderPage.searchHeight)
        item.covered = Qt.binding(() => folderPage.covered || folderPage.showsResults)
        item.menuRequested.connect((index, title, position) => folderPage.menuRequested(folderPage.list, index, title, position))
    }

    // The list, or the results where they are shown, get the keyboard.
    function focusView() {
        const target = resultsLoader.item ?? viewLoader.item
        target?.forceActiveFocus()
    }
}
