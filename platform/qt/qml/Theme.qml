pragma Singleton

import QtQuick

// The one look of the program: colours, sizes of type, spacings and durations. All sizes are in points.
QtObject {
    id: theme

    readonly property bool dark: shell.dark

    readonly property color background: dark ? "#101315" : "#ffffff"
    readonly property color bar: dark ? "#181c1f" : "#f8f9fa"
    readonly property color panel: dark ? "#22272b" : "#ffffff"
    readonly property color field: dark ? "#2a3034" : "#eceff1"
    readonly property color hover: dark ? "#191d20" : "#f5f7f8"
    readonly property color pressed: dark ? "#2a3034" : "#e6eaed"
    readonly property color chosen: dark ? "#12303a" : "#e4f1f4"
    readonly property color text: dark ? "#f1f3f4" : "#15191c"
    readonly property color secondaryText: dark ? "#9ea7ae" : "#5d666e"
    readonly property color faint: dark ? "#5c656c" : "#8b949b"
    readonly property color ring: dark ? "#c7ced3" : "#6c757c"
    readonly property color hairline: dark ? "#33393e" : "#d9dde0"
    readonly property color accent: dark ? "#58bdd4" : "#0b6e87"
    readonly property color accentText: dark ? "#06242c" : "#ffffff"
    readonly property color destructive: dark ? "#ff7b6e" : "#c32f27"
    readonly property color swipeDestructive: "#c32f27"
    readonly property color swipePlain: dark ? "#4a545b" : "#66717a"
    readonly property color swipeAccent: "#0b6e87"
    readonly property color dim: dark ? "#99000000" : "#59000000"

    // The scale follows the size of the system's font; the font itself is the system's.
    readonly property real textScale: shell.textScale
    readonly property real body: Math.round(16 * textScale)
    readonly property real title: body
    readonly property real heading: Math.round(body * 1.18)
    readonly property real caption: Math.round(body * 0.81)
    readonly property real tiny: Math.round(body * 0.7)

    readonly property real margin: shell.tablet ? 24 : 16
    readonly property real spacing: 12
    readonly property real touch: 44
    readonly property real iconSize: 36
    readonly property real symbolSize: Math.round(22 * Math.min(textScale, 1.5))
    readonly property real smallSymbol: Math.round(14 * Math.min(textScale, 1.6))
    readonly property real radius: 10

    readonly property int quick: 120
    readonly property int normal: 220
    readonly property int slide: 300

    // Whether the last input came from the keyboard: frames around what has it are shown only then.
    property bool keyboard: false

    // A field is left by the keyboard: the frame of what is next is to be seen.
    function leave(event) {
        keyboard = true
        event.accepted = false
    }

    // The form that picture sources take: rrggbb.
    function hex(color) {
        return color.toString().slice(-6)
    }

    // Details, each on a line of its own.
    function lines(details) {
        return details.replace(" · ", "\n")
    }
}
