import QtQuick

// A paragraph of an alert.
Text {
    x: 16
    width: parent.width - 32
    visible: text.length > 0
    textFormat: Text.PlainText
    color: Theme.text
    wrapMode: Text.Wrap
    horizontalAlignment: Text.AlignHCenter
    Accessible.role: Accessible.StaticText
    Accessible.name: text
}
