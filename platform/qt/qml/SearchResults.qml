import QtQuick

// What a search has found so far, and what it says when it has found nothing.
FocusScope {
    id: searchResults

    property var list
    readonly property var results: list?.results ?? null
    readonly property bool busy: results?.busy ?? false
    readonly property string text: list?.searchText ?? ""
    readonly property bool bare: (results?.count ?? 0) === 0

    signal menuRequested(var list, int index, string title, point position)

    focus: true
    onTextChanged: rows.currentIndex = -1

    Rectangle {
        anchors.fill: parent
        color: Theme.background
    }

    FolderRows {
        id: rows

        objectName: "resultList"
        anchors.fill: parent
        focus: true
        list: searchResults.results
        onMenuRequested: (index, title, position) => searchResults.menuRequested(list, index, title, position)
    }

    PageState {
        anchors.fill: parent
        visible: searchResults.bare && !searchResults.busy && searchResults.results !== null
        symbol: "search"
        title: shell.text("No Results")
        message: shell.text("Nothing below this folder is called “%@”.").replace("%@", () => searchResults.list?.searchText ?? "")
    }

    PageState {
        anchors.fill: parent
        visible: searchResults.bare && searchResults.busy
        busy: true
        title: shell.text("Searching…")
    }
}
