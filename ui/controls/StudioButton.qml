import QtQuick
import QtQuick.Controls.Basic
import MarbleCove

// The studio's buttons: "bordered" (a soft fill of the tint), "prominent" (filled with the
// tint, white label) or "plain" (no frame).
Button {
    id: control

    property string symbol
    property string kind: "bordered"
    property color tint: kind === "prominent" ? Theme.violet : Theme.ink
    property color labelColor: kind === "prominent" ? "white" : Theme.ink
    property real textSize: 14
    property int textWeight: Font.Medium
    property string tooltip
    property bool leading: false
    property real radius: 8
    // A line high, for a pane's header and its lesser actions, so the studio fits its window.
    property bool compact: false

    padding: compact ? 3 : 7
    leftPadding: kind === "plain" ? 4 : 12
    rightPadding: kind === "plain" ? 4 : 12
    font.pixelSize: textSize
    font.weight: textWeight
    hoverEnabled: true
    opacity: enabled ? 1 : 0.45

    ToolTip.visible: tooltip.length > 0 && hovered
    ToolTip.text: tooltip
    ToolTip.delay: 600
    Accessible.name: text.length > 0 ? text : tooltip
    Accessible.description: text.length > 0 ? tooltip : ""
    // Return presses the focused button as Space does; Ctrl+Return stays Run code's.
    Keys.onReturnPressed: event => pressByKey(event)
    Keys.onEnterPressed: event => pressByKey(event)

    function pressByKey(event) {
        event.accepted = (event.modifiers & ~Qt.KeypadModifier) === Qt.NoModifier
        if (event.accepted)
            clicked()
    }

    FocusRing {
        shown: control.visualFocus
        radius: control.radius + gap
    }

    // The label row is the item's only child; no id inside a deferred property.
    contentItem: Item {
        implicitWidth: children[0].implicitWidth
        implicitHeight: children[0].implicitHeight
        Row {
            x: control.leading ? 0 : Math.round((parent.width - width) / 2)
            anchors.verticalCenter: parent.verticalCenter
            spacing: control.text.length > 0 && control.symbol.length > 0 ? 7 : 0
            SymbolIcon {
                name: control.symbol
                visible: control.symbol.length > 0
                size: control.textSize + 3
                color: control.labelColor
                anchors.verticalCenter: parent.verticalCenter
            }
            Text {
                text: control.text
                visible: control.text.length > 0
                font: control.font
                color: control.labelColor
                anchors.verticalCenter: parent.verticalCenter
            }
        }
    }

    background: Rectangle {
        // A frameless button needs no more room than its label.
        implicitHeight: control.kind === "plain" || control.compact ? 24 : 30
        radius: control.radius
        color: {
            if (control.kind === "prominent")
                return control.down ? Qt.darker(control.tint, 1.2) : control.tint
            if (control.kind === "bordered")
                return Qt.rgba(control.tint.r, control.tint.g, control.tint.b,
                               control.down ? 0.18 : (control.hovered ? 0.12 : 0.08))
            return control.hovered ? Qt.rgba(0.13, 0.16, 0.25, 0.06) : "transparent"
        }
    }
}
