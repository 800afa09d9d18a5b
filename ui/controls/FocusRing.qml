import QtQuick
import MarbleCove

// The ring around whatever holds the keyboard focus, so a child moving with Tab always sees
// where they are. Placed inside the control it marks; it draws just outside its edge.
Rectangle {
    objectName: "focusRing"
    property bool shown: false
    property real gap: 3

    anchors.fill: parent
    anchors.margins: -gap
    color: "transparent"
    border.width: Theme.focusRingWidth
    border.color: Theme.focusRing
    visible: shown
    z: 10
}
