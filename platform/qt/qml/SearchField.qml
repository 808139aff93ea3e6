import QtQuick

// The field over a list in which one types what to look for.
Item {
    id: search

    property var list
    readonly property bool searching: list?.searching ?? false
    readonly property bool wanted: list?.searchFocused ?? false
    readonly property bool hasFocus: input.activeFocus || cancel.activeFocus || clear.activeFocus
    readonly property string text: list?.searchText ?? ""

    // The keyboard leaves the field.
    signal done

    function begin() {
        input.forceActiveFocus(Qt.ShortcutFocusReason)
    }

    function end() {
        list.endSearch()
        done()
    }

    implicitHeight: Math.max(Theme.touch, Math.ceil(Theme.body * 1.4) + 14) + 12
    onWantedChanged: if (wanted && !hasFocus)
        begin()
    onHasFocusChanged: list?.searchFieldFocused(hasFocus)
    onTextChanged: if (input.text !== text)
        input.text = text
    onSearchingChanged: if (!searching && input.activeFocus)
        done()
    Component.onCompleted: {
        input.text = text
        if (wanted)
            begin()
    }

    Rectangle {
        anchors.fill: parent
        color: Theme.background
    }

    Rectangle {
        id: box

        anchors.left: parent.left
        anchors.right: cancel.visible ? cancel.left : parent.right
        anchors.leftMargin: Theme.margin
        anchors.rightMargin: cancel.visible ? 4 : Theme.margin
        anchors.verticalCenter: parent.verticalCenter
        height: parent.height - 18
        radius: Theme.radius
        color: Theme.field
        border.color: Theme.accent
        border.width: input.activeFocus && Theme.keyboard ? 2 : 0

        Symbol {
            id: glass

            anchors.left: parent.left
            anchors.leftMargin: 10
            anchors.verticalCenter: parent.verticalCenter
            name: "search"
            size: Math.round(17 * Math.min(Theme.textScale, 1.5))
            color: Theme.secondaryText
        }

        TextInput {
            id: input

            objectName: "searchField"
            anchors.left: glass.right
            anchors.right: clear.visible ? clear.left : parent.right
            anchors.leftMargin: 6
            anchors.rightMargin: 8
            height: parent.height
            activeFocusOnTab: true
            font.pixelSize: Theme.body
            color: Theme.text
            selectionColor: Theme.accent
            selectedTextColor: Theme.accentText
            selectByMouse: true
            clip: true
            inputMethodHints: Qt.ImhNoPredictiveText | Qt.ImhNoAutoUppercase
            horizontalAlignment: Text.AlignLeft
            verticalAlignment: Text.AlignVCenter
            onTextEdited: search.list.search(text)
            Keys.onTabPressed: event => Theme.leave(event)
            Keys.onBacktabPressed: event => Theme.leave(event)
            Keys.onEscapePressed: search.end()
            Keys.onDownPressed: {
                Theme.keyboard = true
                search.done()
            }
            Keys.onReturnPressed: search.done()
            Accessible.role: Accessible.EditableText
            Accessible.name: shell.text("Search")
            Accessible.searchEdit: true

            Text {
                anchors.fill: parent
                visible: input.text.length === 0 && input.preeditText.length === 0
                text: shell.text("Search")
                font: input.font
                color: Theme.secondaryText
                horizontalAlignment: Text.AlignLeft
                verticalAlignment: Text.AlignVCenter
                Accessible.ignored: true
            }
        }

        SymbolButton {
            id: clear

            anchors.right: parent.right
            height: parent.height
            width: 40
            visible: input.text.length > 0
            name: shell.text("Clear")
            symbol: "clear"
            color: Theme.secondaryText
            onActivated: {
                input.clear()
                search.list.search("")
                search.begin()
            }
        }
    }

    TextButton {
        id: cancel

        anchors.right: parent.right
        anchors.rightMargin: Theme.margin - padding
        anchors.verticalCenter: parent.verticalCenter
        visible: search.searching || search.hasFocus
        name: shell.text("Cancel")
        onActivated: search.end()
    }
}
