import QtQuick
import QtQuick.Layouts
import MarbleCove

// The sheet's frame; its content arrives with the screen itself.
Item {
    implicitWidth: 760
    implicitHeight: 700

    SheetTitle {
        anchors.top: parent.top
        anchors.left: parent.left
        anchors.margins: 30
        text: "My creations"
    }
}
