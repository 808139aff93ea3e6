import QtQuick

// One line of text that the user edits. The program's text and selection are taken over when they differ, and what the
// user does is told to it: never both ways at once.
Rectangle {
    id: field

    required property var node
    property bool taking: false
    property bool beginning: false
    readonly property bool ground: node?.ground ?? true
    // What is centred stays so beside the button that clears it.
    readonly property real leading: ground ? 10 : !input.activeFocus ? 0 : clear.visible && input.centred ? clear.width : 8
    readonly property real trailing: ground ? 10 : input.activeFocus ? 8 : 0

    radius: 8
    color: ground ? Theme.field : "transparent"
    border.color: Theme.accent
    border.width: ground && input.activeFocus ? 1.5 : 0
    onEnabledChanged: if (enabled)
        Qt.callLater(take)
    Component.onCompleted: take()

    Connections {
        target: field.node

        function onChanged() {
            field.take()
        }
    }

    Binding {
        target: field.node
        property: "composing"
        value: input.inputMethodComposing
    }

    function take() {
        if (taking || input.inputMethodComposing)
            return
        taking = true
        if (input.text !== node.text)
            input.text = node.text
        if (input.selectionStart !== node.selectionStart || input.selectionEnd !== node.selectionEnd)
            input.select(node.selectionStart, node.selectionEnd)
        taking = false
        if (node.focused !== input.activeFocus)
            Qt.callLater(follow)
    }

    // The keyboard goes where the program wants it.
    function follow() {
        if (node?.focused)
            input.forceActiveFocus()
        else
            input.focus = false
    }

    function tellSelection() {
        if (!taking && !beginning && node && !input.inputMethodComposing
                && (input.selectionStart !== node.selectionStart || input.selectionEnd !== node.selectionEnd))
            node.select(input.selectionStart, input.selectionEnd)
    }

    function tellFocus() {
        if (!node || input.activeFocus === node.focused)
            return
        if (input.activeFocus) {
            beginning = true
            node.beginEditing()
            Qt.callLater(begun)
        } else {
            Qt.callLater(lost)
        }
    }

    // What has come to lie over the field only borrows the keyboard.
    function lost() {
        if (node?.focused && !input.activeFocus && enabled && Qt.application.state === Qt.ApplicationActive)
            node.endEditing()
    }

    // The touch that begins editing leaves the caret where the program wants it.
    function begun() {
        if (touch.active)
            return
        beginning = false
        take()
    }

    TextInput {
        id: input

        readonly property bool centred: horizontalAlignment === TextInput.AlignHCenter
        objectName: "textField"
        anchors.left: parent.left
        anchors.right: clear.visible ? clear.left : parent.right
        anchors.leftMargin: field.leading
        anchors.rightMargin: clear.visible ? 0 : field.trailing
        height: parent.height
        focus: true
        activeFocusOnTab: true
        enabled: field.node?.enabled ?? false
        font: field.node?.font ?? Qt.application.font
        color: shortened.visible ? "transparent" : enabled ? Theme.text : Theme.faint
        selectionColor: Theme.accent
        selectedTextColor: Theme.accentText
        selectByMouse: true
        persistentSelection: true
        clip: true
        inputMethodHints: (field.node?.corrects ? Qt.ImhNone : Qt.ImhNoPredictiveText)
                          | (field.node?.capitalizesWords ? Qt.ImhNone : Qt.ImhNoAutoUppercase)
        EnterKey.type: field.node?.returnKeyIsDone ? Qt.EnterKeyDone : Qt.EnterKeyDefault
        horizontalAlignment: field.node?.alignment ?? Text.AlignLeft
        verticalAlignment: Text.AlignVCenter
        onTextEdited: field.node?.edit(text)
        onSelectionStartChanged: Qt.callLater(field.tellSelection)
        onSelectionEndChanged: Qt.callLater(field.tellSelection)
        onActiveFocusChanged: field.tellFocus()
        Keys.onTabPressed: event => Theme.leave(event)
        Keys.onBacktabPressed: event => Theme.leave(event)
        Keys.onReturnPressed: field.node?.pressReturn()
        Keys.onEnterPressed: field.node?.pressReturn()
        Accessible.role: Accessible.EditableText
        Accessible.name: field.node?.accessibleName || field.node?.placeholder || shell.text("Text")

        PointHandler {
            id: touch

            onActiveChanged: if (!active && field.beginning)
                Qt.callLater(field.begun)
        }

        Text {
            anchors.fill: parent
            visible: input.text.length === 0 && input.preeditText.length === 0
            text: field.node?.placeholder ?? ""
            textFormat: Text.PlainText
            font: input.font
            color: Theme.secondaryText
            elide: Text.ElideRight
            horizontalAlignment: input.horizontalAlignment
            verticalAlignment: Text.AlignVCenter
            Accessible.ignored: true
        }
    }

    // What is too long shows its beginning and its end.
    Text {
        id: shortened

        anchors.fill: input
        visible: !field.ground && !input.activeFocus && input.contentWidth > input.width
        text: input.text
        textFormat: Text.PlainText
        font: input.font
        color: Theme.text
        elide: Text.ElideMiddle
        horizontalAlignment: input.horizontalAlignment
        verticalAlignment: Text.AlignVCenter
        Accessible.ignored: true
    }

    SymbolButton {
        id: clear

        anchors.right: parent.right
        height: parent.height
        width: 36
        visible: (field.node?.clearButton ?? false) && input.text.length > 0
        activeFocusOnTab: false
        name: shell.text("Clear")
        symbol: "clear"
        color: Theme.secondaryText
        onActivated: field.node.clear()
    }
}
