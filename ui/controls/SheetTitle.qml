import QtQuick
import MarbleCove

// The large rounded title at the top of a sheet.
Text {
    font.family: Theme.roundedFont
    font.pixelSize: 25
    font.weight: Font.Black
    color: Theme.ink
    wrapMode: Text.WordWrap
}
