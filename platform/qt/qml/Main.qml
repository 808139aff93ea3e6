import QtQuick
import QtQuick.Window

Window {
    visible: true
    title: shell.applicationTitle
}
