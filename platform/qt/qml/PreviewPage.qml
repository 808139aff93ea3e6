import QtQuick
import Tessel

// A preview of a document: its content, or what there is to say of it.
FocusScope {
    id: previewPage

    property var page
    property bool covered
    readonly property var preview: page?.preview ?? null
    readonly property bool showsContent: preview !== null && preview.state === DocumentPreview.Shown && preview.kind !== DocumentPreview.Nothing

    objectName: "previewPage"
    focus: true
    clip: true

    function sourceFor(kind) {
        switch (kind) {
        case DocumentPreview.Text: return "PreviewText.qml"
        case DocumentPreview.Image: return "PreviewImage.qml"
        case DocumentPreview.Pages: return "PreviewPages.qml"
        }
        return "PreviewMedia.qml"
    }

    function handle(event) {
        if (content.item?.handle)
            event.accepted = content.item.handle(event)
    }

    Loader {
        id: content

        anchors.fill: parent
        active: previewPage.showsContent
        source: previewPage.showsContent ? previewPage.sourceFor(previewPage.preview.kind) : ""
        onLoaded: item.preview = Qt.binding(() => previewPage.preview)

        Binding {
            target: content.item
            property: "covered"
            value: previewPage.covered
        }
    }

    Loader {
        anchors.fill: parent
        active: previewPage.preview !== null && !previewPage.showsContent
        sourceComponent: PreviewNotice {
            preview: previewPage.preview
        }
    }
}
