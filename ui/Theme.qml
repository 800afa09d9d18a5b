pragma Singleton
import QtQuick

// The one place for the studio's colours, fonts and symbols; screens never repeat a literal.
QtObject {
    readonly property color ink: Qt.rgba(0.13, 0.16, 0.25, 1)
    readonly property color violet: Qt.rgba(0.42, 0.28, 0.88, 1)
    readonly property color mint: Qt.rgba(0.78, 0.95, 0.86, 1)
    readonly property color window: Qt.rgba(0.96, 0.96, 0.99, 1)
    readonly property color sidebar: Qt.rgba(0.92, 0.92, 0.97, 1)
    readonly property color editorFill: Qt.rgba(0.96, 0.96, 0.99, 1)
    readonly property color card: "white"
    readonly property color secondary: Qt.rgba(0.13, 0.16, 0.25, 0.6)
    readonly property color divider: Qt.rgba(0.13, 0.16, 0.25, 0.12)
    readonly property color border: Qt.rgba(0.13, 0.16, 0.25, 0.16)
    readonly property color green: Qt.rgba(0.2, 0.78, 0.35, 1)
    readonly property color yellow: Qt.rgba(1, 0.8, 0, 1)
    readonly property color danger: Qt.rgba(0.86, 0.2, 0.18, 1)
    readonly property color mapBackground: Qt.rgba(0.95, 0.95, 0.99, 1)
    // The code editor's words by role, each at least 4.5:1 on editorFill.
    readonly property var codeColors: ({
        "command": "#5a2bc9",
        "number": "#0b6e4f",
        "color": "#b0226a",
        "repeat": "#a14600",
        "bracket": "#4a5578",
        "recipe": "#0057ae",
        "comment": "#5e6a78",
        "unknown": "#c21f1a"
    })
    // Marks linking the code and the drawing: the running word, its recipe call, a matching bracket.
    readonly property color runningWord: Qt.rgba(1, 0.8, 0, 0.45)
    readonly property color runningCall: Qt.rgba(1, 0.8, 0, 0.2)
    readonly property color bracketMatch: Qt.rgba(0.42, 0.28, 0.88, 0.18)
    readonly property color errorWave: Qt.rgba(0.86, 0.2, 0.18, 1)
    readonly property color gutterText: Qt.rgba(0.13, 0.16, 0.25, 0.45)
    // Over the drawing: picked strokes glow; the difference from a mission in colours safe for
    // colour-blind eyes (blue dashes for missing lines, vermilion stripes for lines to change).
    readonly property color emphasis: Qt.rgba(1, 0.8, 0, 1)
    readonly property color missingLine: "#0072b2"
    readonly property color extraLine: "#d55e00"

    // The ring around the control that holds the keyboard focus.
    readonly property color focusRing: violet
    readonly property real focusRingWidth: 2
    // A highlighted or hovered row of a menu, list or picker, and one being pressed.
    readonly property color highlightFill: Qt.rgba(0.42, 0.28, 0.88, 0.12)
    readonly property color pressedFill: Qt.rgba(0.42, 0.28, 0.88, 0.2)
    // What dims the studio behind a sheet or a dialog.
    readonly property color scrim: Qt.rgba(0.13, 0.16, 0.25, 0.28)
    // The platform's standard gray, for locked things and soft card fills.
    readonly property color gray: Qt.rgba(0.56, 0.56, 0.58, 1)

    // The platform's second- and third-level title sizes.
    readonly property real title2Size: 22
    readonly property real title3Size: 18

    readonly property string roundedFont: "Quicksand"
    readonly property string bodyFont: "sans-serif"
    readonly property string codeFont: "DejaVu Sans Mono"
    readonly property string symbolFont: "Material Icons"

    // System symbol names as the screens speak them, drawn with the icon font.
    readonly property var symbols: ({
        "play.fill": "\ue037",
        "stop.fill": "\ue047",
        "forward.end.fill": "\ue044",
        "arrow.counterclockwise": "\ue5d5",
        "questionmark.circle": "\ue8fd",
        "chevron.left.forwardslash.chevron.right": "\ue86f",
        "lightbulb": "\ue90f",
        "lightbulb.fill": "\ue0f0",
        "flag.fill": "\ue153",
        "heart.fill": "\ue87d",
        "heart.square": "\ue87e",
        "paintpalette": "\ue40a",
        "photo.on.rectangle.angled": "\ue413",
        "gift.fill": "\ue8f6",
        "map.fill": "\ue55b",
        "checkmark.circle.fill": "\ue86c",
        "circle": "\ue836",
        "lock.fill": "\ue897",
        "wand.and.stars": "\ue663",
        "book.closed.fill": "\uea19",
        "sparkles": "\ue65f",
        "bubble.left.fill": "\ue0ca",
        "exclamationmark.triangle": "\ue002",
        "square.and.arrow.up": "\ue6b8",
        "pencil": "\ue3c9",
        "leaf.fill": "\uea35",
        "building.2.fill": "\ue7f1",
        "paintbrush.pointed.fill": "\ue3ae",
        "mountain.2.fill": "\ue3f7",
        "chevron.down": "\ue5cf",
        "checkmark": "\ue5ca",
        "arrow.turn.down.right": "\ue5da",
        "xmark": "\ue5cd",
        "star.fill": "\ue838",
        "hand.wave.fill": "\ue766",
        "heart.square.fill": "\ue87d",
        "seal.fill": "\ue7af",
        "lock.circle": "\ue899",
        "checkmark.seal.fill": "\uef76",
        "paintpalette.fill": "\ue40a"
    })

    // Symbols the icon font lacks, drawn from our own SVGs.
    readonly property var symbolPictures: ({
        "hare.fill": ":/MarbleCove/resources/symbols/hare.svg",
        "tortoise.fill": ":/MarbleCove/resources/symbols/tortoise.svg"
    })

    function symbolPicture(name) {
        return symbolPictures[name] !== undefined ? symbolPictures[name] : ""
    }

    function symbol(name) {
        return symbols[name] !== undefined ? symbols[name] : ""
    }
}
