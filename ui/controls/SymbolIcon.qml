import QtQuick
import MarbleCove

// A system symbol by name, drawn from the icon font.
Text {
    property string name
    property real size: 16

    text: Theme.symbol(name)
    font.family: Theme.symbolFont
    font.pixelSize: size
    color: Theme.ink
    verticalAlignment: Text.AlignVCenter
    horizontalAlignment: Text.AlignHCenter
    Accessible.ignored: true
}
