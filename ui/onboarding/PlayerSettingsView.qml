import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import MarbleCove

// The child's name, and starting the whole game over after a clear warning.
Item {
    id: profile
    implicitWidth: 480
    implicitHeight: column.implicitHeight + 60

    property string name: Studio.playerName
    Component.onCompleted: name = name

    ColumnLayout {
        id: column
        anchors.fill: parent
        anchors.margins: 30
        spacing: 20

        Text {
            text: "Your profile"
            font.family: Theme.roundedFont
            font.pixelSize: 26
            font.weight: Font.Black
            color: Theme.ink
        }
        Text {
            text: "What should we call you?"
            font.pixelSize: 16
            font.bold: true
            color: Theme.ink
        }
        StudioTextField {
            id: field
            objectName: "playerNameField"
            text: profile.name
            placeholderText: "Your name"
            font.pixelSize: 20
            focus: true
            Layout.fillWidth: true
            Accessible.name: "Your name"
            onTextEdited: {
                const limited = Catalog.limitName(text)
                if (limited !== text)
                    text = limited
                profile.name = text
            }
            fieldHeight: 40
        }
        Text {
            text: "Changing your name keeps your missions, turtle, and creations."
            font.pixelSize: 13
            color: Theme.secondary
            wrapMode: Text.WordWrap
            Layout.fillWidth: true
        }
        RowLayout {
            Layout.fillWidth: true
            StudioButton {
                objectName: "cancelProfileButton"
                text: "Cancel"
                onClicked: Studio.playerSettings = false
            }
            Item { Layout.fillWidth: true }
            StudioButton {
                objectName: "saveNameButton"
                kind: "prominent"
                text: "Save my name"
                enabled: Catalog.cleanName(profile.name).length > 0
                onClicked: if (Studio.savePlayerName(profile.name)) Studio.playerSettings = false
            }
        }
        Rectangle { Layout.fillWidth: true; implicitHeight: 1; color: Theme.divider }
        Text {
            text: "A fresh beginning"
            font.pixelSize: 16
            font.bold: true
            color: Theme.ink
        }
        Text {
            text: "Erase this game\u2019s progress and saved creations, then meet your turtle all over again."
            font.pixelSize: 14
            color: Theme.secondary
            wrapMode: Text.WordWrap
            Layout.fillWidth: true
        }
        StudioButton {
            objectName: "startOverButton"
            text: "Start over\u2026"
            tint: Theme.danger
            labelColor: Theme.danger
            onClicked: eraseAlert.open()
        }
    }

    Dialog {
        id: eraseAlert
        objectName: "eraseAlert"
        parent: profile
        anchors.centerIn: parent
        width: 400
        modal: true
        padding: 22
        closePolicy: Popup.CloseOnEscape
        background: Rectangle {
            radius: 14
            color: Theme.card
            border.color: Theme.border
        }
        contentItem: ColumnLayout {
            spacing: 14
            Text {
                text: "Erase this game and start over?"
                font.pixelSize: 16
                font.bold: true
                color: Theme.ink
                wrapMode: Text.WordWrap
                Layout.fillWidth: true
            }
            Text {
                text: "This permanently removes all mission progress, badges, unlocked rewards, saved code, gallery creations, names, and preferences on this computer. You\u2019ll return to the welcome guide. This cannot be undone. Pictures you already exported are kept."
                font.pixelSize: 13
                color: Theme.ink
                wrapMode: Text.WordWrap
                Layout.fillWidth: true
            }
            RowLayout {
                Layout.fillWidth: true
                spacing: 10
                Item { Layout.fillWidth: true }
                StudioButton {
                    objectName: "keepGameButton"
                    text: "Keep my game"
                    onClicked: eraseAlert.close()
                }
                StudioButton {
                    objectName: "eraseGameButton"
                    kind: "prominent"
                    tint: Theme.danger
                    text: "Erase game and start over"
                    onClicked: {
                        eraseAlert.close()
                        Studio.requestGameReset()
                    }
                }
            }
        }
    }
}
