import QtQuick
import QtQuick.Layouts
import MarbleCove

// The top row of a side sheet: its title, and "Done" at the far end, which closes the sheet.
RowLayout {
    id: header

    property string title
    property real titleSize: 27
    // Prefix for the objectNames of the title ("<name>Title") and the button ("<name>DoneButton").
    property string name
    signal done()

    spacing: 12

    Text {
        objectName: header.name + "Title"
        text: header.title
        font.family: Theme.roundedFont
        font.pixelSize: header.titleSize
        font.weight: Font.Black
        color: Theme.ink
        elide: Text.ElideRight
        Layout.fillWidth: true
    }
    StudioButton {
        objectName: header.name + "DoneButton"
        text: "Done"
        onClicked: header.done()
    }
}
