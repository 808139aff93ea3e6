import QtQuick

// That an item's content is in the cloud, or how much of it has come.
Item {
    id: mark

    required property var row

    width: Math.round(18 * Math.min(Theme.textScale, 1.6))
    height: width
    Accessible.ignored: true

    Symbol {
        visible: mark.row.progress < 0
        name: "cloud"
        size: mark.width
        color: Theme.secondaryText
    }

    Loader {
        active: mark.row.progress >= 0
        sourceComponent: ProgressRing {
            size: mark.width
            value: mark.row.progress
        }
    }
}
