import QtQuick
import QtQuick.Layouts
import MarbleCove

// The sheet's frame; its content arrives with the screen itself.
Item {
    implicitWidth: 670
    implicitHeight: 710

    SheetTitle {
        anchors.top: parent.top
        anchors.left: parent.left
        anchors.margins: 30
        text: "Coder’s handbook"
    }
}
