import QtQuick
import QtQuick.Layouts
import MarbleCove

// The sheet's frame; its content arrives with the screen itself.
Item {
    implicitWidth: 480
    implicitHeight: 400

    SheetTitle {
        anchors.top: parent.top
        anchors.left: parent.left
        anchors.margins: 30
        text: "Your profile"
    }
}
