import QtQuick

// Where one view of the program is shown, by the file for its kind. A placed one lies at its own frame in the host's
// parent, from the leading edge; another one is put somewhere by who declares it, and has its own size if framed.
Loader {
    id: host

    property var node: null
    property bool placed: true
    property bool framed: true

    readonly property var files: ({
            "plain": "NodeView.qml",
            "stack": "NodeView.qml",
            "label": "NodeLabel.qml",
            "button": "NodeButton.qml",
            "textField": "NodeTextField.qml",
            "image": "NodeImage.qml",
            "scroll": "NodeScroll.qml",
            "drawn": "NodeDrawn.qml"
        })

    visible: node?.visible ?? false
    onNodeChanged: show()

    function show() {
        if (node)
            setSource(files[node.kind], {"node": node})
        else
            source = ""
    }

    Binding on x {
        when: host.placed && host.node
        value: shell.mirrored ? (host.parent?.width ?? 0) - (host.node?.x ?? 0) - (host.node?.width ?? 0) : host.node?.x ?? 0
    }

    Binding on y {
        when: host.placed && host.node
        value: host.node?.y ?? 0
    }

    Binding on width {
        when: host.framed && host.node
        value: host.node?.width ?? 0
    }

    Binding on height {
        when: host.framed && host.node
        value: host.node?.height ?? 0
    }
}
