import QtQuick
import MarbleCove

// A system symbol by name, drawn from the icon font, or from one of our SVGs where the font
// has no such symbol.
Item {
    id: icon

    property string name
    property real size: 16
    property color color: Theme.ink
    readonly property string picture: Theme.symbolPicture(name)

    implicitWidth: picture.length > 0 ? size : glyph.implicitWidth
    implicitHeight: picture.length > 0 ? size : glyph.implicitHeight
    Accessible.ignored: true

    Text {
        id: glyph
        anchors.fill: parent
        visible: icon.picture.length === 0
        text: Theme.symbol(icon.name)
        font.family: Theme.symbolFont
        font.pixelSize: icon.size
        color: icon.color
        verticalAlignment: Text.AlignVCenter
        horizontalAlignment: Text.AlignHCenter
    }
    SymbolPicture {
        anchors.fill: parent
        visible: icon.picture.length > 0
        source: icon.picture
        color: icon.color
    }
}
