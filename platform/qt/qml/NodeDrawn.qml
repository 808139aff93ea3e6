import QtQuick
import Tessel

// What a view draws itself.
DrawnItem {
    id: drawn

    Accessible.role: Accessible.Graphic
    Accessible.name: node?.accessibleName ?? ""
    Accessible.ignored: Accessible.name.length === 0

    NodeChildren {
        node: drawn.node
    }
}
