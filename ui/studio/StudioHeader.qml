import QtQuick
import QtQuick.Layouts
import MarbleCove

// Logo, name and title line, rank, experience, and the ways to the gallery, shelf and profile.
Rectangle {
    id: header
    color: "transparent"
    implicitHeight: row.implicitHeight + 40

    RowLayout {
        id: row
        anchors.fill: parent
        anchors.leftMargin: 26
        anchors.rightMargin: 26
        anchors.topMargin: 20
        anchors.bottomMargin: 20
        spacing: 14

        Image {
            id: logo
            // Drawn from the vector source at the screen's pixel ratio, so it stays sharp when scaled.
            source: "qrc:/MarbleCove/resources/MarbleCoveLogo.svg"
            sourceSize.width: 48
            sourceSize.height: 48
            fillMode: Image.PreserveAspectFit
            Layout.preferredWidth: 48
            Layout.preferredHeight: 48
            visible: status === Image.Ready
        }
        SymbolIcon {
            name: "sparkles"
            size: 28
            color: Theme.violet
            visible: logo.status !== Image.Ready
        }

        ColumnLayout {
            spacing: 2
            Text {
                text: "marble cove"
                font.family: Theme.roundedFont
                font.pixelSize: 25
                font.weight: Font.Black
                color: Theme.ink
            }
            Text {
                objectName: "worldTitle"
                text: Studio.worldTitle
                font.pixelSize: 11
                font.bold: true
                font.letterSpacing: 1
                color: Theme.secondary
                elide: Text.ElideRight
                maximumLineCount: 1
                Layout.maximumWidth: 300
            }
        }

        Item { Layout.fillWidth: true }

        Text {
            objectName: "rank"
            text: Studio.rank
            Accessible.role: Accessible.StaticText
            Accessible.name: text
            font.pixelSize: 13
            font.bold: true
            color: Theme.violet
        }

        Rectangle {
            objectName: "experience"
            radius: height / 2
            color: Qt.rgba(1, 0.8, 0, 0.23)
            implicitWidth: xp.implicitWidth + 24
            implicitHeight: xp.implicitHeight + 24
            Text {
                id: xp
                anchors.centerIn: parent
                text: "\u2726 " + Studio.experience + " XP"
                Accessible.role: Accessible.StaticText
                Accessible.name: Studio.experience + " XP"
                font.family: Theme.roundedFont
                font.pixelSize: 16
                font.bold: true
                color: Theme.ink
            }
        }

        StudioButton {
            objectName: "galleryButton"
            text: "My creations"
            symbol: "photo.on.rectangle.angled"
            onClicked: Studio.gallery = true
        }
        StudioButton {
            objectName: "treasuresButton"
            text: "Treasures"
            symbol: "gift.fill"
            onClicked: Studio.collection = true
        }
        StudioButton {
            id: profile
            objectName: "profileButton"
            kind: "plain"
            tooltip: "Open your profile"
            Accessible.name: "Open your profile"
            padding: 0
            leftPadding: 0
            rightPadding: 0
            contentItem: Item {
                implicitWidth: 36
                implicitHeight: 36
                Rectangle {
                    anchors.fill: parent
                    radius: 18
                    color: Theme.mint
                }
                Text {
                    anchors.centerIn: parent
                    text: Studio.avatarLetter
                    font.pixelSize: 16
                    font.bold: true
                    color: Theme.ink
                }
            }
            background: null
            onClicked: Studio.playerSettings = true
        }
    }
}
