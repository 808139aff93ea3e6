import QtQuick

// A view with its ground, its border and its subviews.
Rectangle {
    id: view

    required property var node

    color: node?.color ?? "transparent"
    border.width: node?.borderWidth ?? 0
    border.color: node?.borderColor ?? "transparent"
    Accessible.role: Accessible.Grouping
    Accessible.name: node?.accessibleName ?? ""
    Accessible.ignored: Accessible.name.length === 0

    NodeChildren {
        node: view.node
    }
}
