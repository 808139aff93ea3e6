import QtQuick

// A page of the program's own views.
FocusScope {
    id: viewPage

    property var page
    property bool covered

    focus: true
    clip: true

    Loader {
        anchors.fill: parent
        active: viewPage.page !== undefined && viewPage.page.root !== null
        focus: true
        sourceComponent: NodeHost {
            node: viewPage.page.root
            placed: false
        }
    }
}
