import QtQuick

// What stands in place of the lists while there is no drive.
FocusScope {
    property var page
    property bool covered

    focus: true
    PageState {
        anchors.fill: parent
        symbol: "cloud"
        title: page.message
    }
}
