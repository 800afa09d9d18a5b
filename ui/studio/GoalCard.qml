import QtQuick
import QtQuick.Layouts
import MarbleCove

// The task in one or two sentences, or the free-play invitation.
Rectangle {
    radius: 16
    color: Theme.card
    implicitHeight: goal.implicitHeight + 34

    RowLayout {
        id: goal
        anchors.fill: parent
        anchors.margins: 17
        spacing: 10
        SymbolIcon {
            name: Studio.free ? "lightbulb.fill" : "flag.fill"
            size: 18
            color: Theme.violet
            Layout.alignment: Qt.AlignTop
        }
        Text {
            objectName: "goalText"
            text: Studio.free ? "Make something only you could imagine. Save your favorites and come back to remix them."
                              : Catalog.missions[Studio.mission].goal
            font.pixelSize: 15
            font.weight: Font.Medium
            color: Theme.ink
            wrapMode: Text.WordWrap
            Layout.fillWidth: true
        }
    }
}
