import QtQuick
import QtQuick.Window

// A line of one device pixel.
Rectangle {
    height: 1 / Screen.devicePixelRatio
    color: Theme.hairline
    Accessible.ignored: true
}
