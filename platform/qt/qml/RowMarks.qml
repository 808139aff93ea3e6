import QtQuick

// The signs at the end of a row: tags, where the content is, and that a list opens.
Row {
    id: marks

    required property var row
    property bool chevron: false

    spacing: 8
    Accessible.ignored: true

    Loader {
        anchors.verticalCenter: parent.verticalCenter
        active: marks.row.tags.length > 0
        visible: active
        sourceComponent: TagDots {
            tags: marks.row.tags
        }
    }

    Loader {
        anchors.verticalCenter: parent.verticalCenter
        active: marks.row.inCloud || marks.row.progress >= 0
        visible: active
        sourceComponent: CloudMark {
            row: marks.row
        }
    }

    Symbol {
        anchors.verticalCenter: parent.verticalCenter
        visible: marks.chevron
        name: "chevron"
        directed: true
        size: Theme.smallSymbol
        color: Theme.faint
    }
}
