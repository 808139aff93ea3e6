import QtQuick

// Text that is only read.
Text {
    id: label

    required property var node

    text: node?.richText || node?.text || ""
    textFormat: node?.richText ? Text.RichText : Text.PlainText
    font: node?.font ?? Qt.application.font
    color: node?.textColor ?? Theme.text
    horizontalAlignment: node?.alignment ?? Text.AlignLeft
    verticalAlignment: Text.AlignVCenter
    elide: node?.elide ?? Text.ElideRight
    maximumLineCount: node?.lines > 0 ? node.lines : 10000
    wrapMode: node?.lines === 1 ? Text.NoWrap : Text.Wrap
    LayoutMirroring.enabled: textFormat === Text.PlainText && shell.mirrored // rich text has a direction of its own
    clip: textFormat === Text.RichText // which is never elided
    Accessible.role: Accessible.StaticText
    Accessible.name: node?.accessibleName || node?.text || ""
    Accessible.ignored: text.length === 0

    NodeChildren {
        node: label.node
    }
}
