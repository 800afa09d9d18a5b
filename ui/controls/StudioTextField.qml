import QtQuick
import QtQuick.Controls.Basic
import MarbleCove

// The studio's text fields: white and rounded, ringed while they take the typing.
TextField {
    id: field

    property real fieldHeight: 40
    property real radius: 10

    selectByMouse: true
    color: Theme.ink

    background: Rectangle {
        implicitHeight: field.fieldHeight
        radius: field.radius
        color: Theme.card
        border.color: Theme.border
        FocusRing {
            shown: field.activeFocus
            radius: field.radius + gap
        }
    }
}
