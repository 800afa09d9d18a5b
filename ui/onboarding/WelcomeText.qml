import QtQuick
import QtQuick.Layouts
import MarbleCove

// A centred, wrapping line of the welcome pages.
Text {
    property real size: 16
    property int weight: Font.Normal
    // The welcome sheet is 740 wide with 30 of padding on each side.
    property real maximumWidth: 680

    font.family: weight >= Font.Bold ? Theme.roundedFont : Theme.bodyFont
    font.pixelSize: size
    font.weight: weight
    color: Theme.ink
    wrapMode: Text.WordWrap
    horizontalAlignment: Text.AlignHCenter
    // A fixed width lets the wrapped height be right the first time.
    Layout.preferredWidth: maximumWidth
    Layout.alignment: Qt.AlignHCenter
}
