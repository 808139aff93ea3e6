import QtQuick

// The subviews of a view, back to front.
Repeater {
    id: subviews

    // Not to be confused with the role of the same name.
    property var owner: null
    property alias node: subviews.owner

    model: owner?.children ?? null

    NodeHost {
        required property var model

        node: model.node
    }
}
