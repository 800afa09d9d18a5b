import QtQuick
import QtQuick.Layouts
import MarbleCove

// Choose and name the turtle; nothing is kept until "Save my sidekick".
Rectangle {
    id: settings
    implicitWidth: 700
    implicitHeight: column.implicitHeight + 60
    color: Theme.window
    radius: 18

    property int selected: Studio.turtle
    property string nickname: Studio.turtleName
    // Start from the studio's values, then let the child's edits stand on their own.
    Component.onCompleted: {
        selected = selected
        nickname = nickname
    }

    ColumnLayout {
        id: column
        anchors.fill: parent
        anchors.margins: 30
        spacing: 22

        Text {
            text: "Your turtle, your kind of magic."
            font.family: Theme.roundedFont
            font.pixelSize: 28
            font.weight: Font.Black
            color: Theme.ink
        }
        CompanionPicker {
            Layout.fillWidth: true
            selected: settings.selected
            nickname: settings.nickname
            onPicked: (index, name) => {
                settings.selected = index
                settings.nickname = name
            }
            onRenamed: name => settings.nickname = name
        }
        RowLayout {
            Layout.fillWidth: true
            StudioButton {
                objectName: "cancelCompanionButton"
                text: "Cancel"
                onClicked: Studio.companionSettings = false
            }
            Item { Layout.fillWidth: true }
            StudioButton {
                objectName: "saveCompanionButton"
                kind: "prominent"
                text: "Save my sidekick"
                enabled: Catalog.cleanName(settings.nickname).length > 0
                onClicked: if (Studio.saveCompanion(settings.selected, settings.nickname)) Studio.companionSettings = false
            }
        }
    }
}
