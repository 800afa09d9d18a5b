import QtQuick
import QtQuick.Layouts
import MarbleCove

// The reward for a finished mission, and the way on.
Item {
    id: celebration
    implicitWidth: 510
    implicitHeight: column.implicitHeight + 88

    readonly property bool fresh: Studio.freshReward
    readonly property bool last: Studio.mission >= Catalog.missions.length - 1

    ColumnLayout {
        id: column
        anchors.fill: parent
        anchors.margins: 44
        spacing: 20

        Text {
            text: celebration.fresh ? "\u{1F31F}" : "\u2728"
            font.family: "Noto Color Emoji"
            font.pixelSize: 68
            Layout.alignment: Qt.AlignHCenter
        }
        Text {
            objectName: "celebrationHeadline"
            text: celebration.fresh ? "Look what you made!" : "You\u2019ve still got it!"
            font.family: Theme.roundedFont
            font.pixelSize: 30
            font.weight: Font.Black
            color: Theme.ink
            Layout.alignment: Qt.AlignHCenter
        }
        Text {
            objectName: "celebrationPrize"
            text: Catalog.missions[Studio.mission].prize
            font.pixelSize: 20
            font.weight: Font.DemiBold
            color: Theme.ink
            Layout.alignment: Qt.AlignHCenter
        }
        Text {
            text: celebration.fresh ? "+100 XP \u00b7 A new badge for your shelf."
                                    : "You\u2019ve already earned this badge. Great practice!"
            font.pixelSize: 14
            color: Theme.secondary
            Layout.alignment: Qt.AlignHCenter
        }
        Text {
            objectName: "royalLine"
            visible: Studio.announcesRoyalCompanion
            text: "Your Majesty, the royal turtle, is now yours!"
            font.pixelSize: 14
            font.weight: Font.DemiBold
            color: Theme.violet
            Layout.alignment: Qt.AlignHCenter
        }
        Text {
            objectName: "canvasLine"
            visible: Studio.announcedTheme >= 0
            text: Studio.announcedTheme >= 0 ? "New canvas unlocked: " + Catalog.themes[Studio.announcedTheme].name + "!" : ""
            font.pixelSize: 14
            font.weight: Font.DemiBold
            color: Theme.violet
            Layout.alignment: Qt.AlignHCenter
        }
        StudioButton {
            objectName: "nextAdventureButton"
            kind: "prominent"
            text: celebration.last ? "Explore free play" : "Next adventure"
            textSize: 16
            padding: 12
            leftPadding: 22
            rightPadding: 22
            Layout.alignment: Qt.AlignHCenter
            onClicked: {
                const next = Studio.mission + 1
                Studio.celebration = false
                if (celebration.last)
                    Studio.enterFree()
                else
                    Studio.select(next)
            }
        }
        StudioButton {
            objectName: "keepExploringButton"
            kind: "plain"
            text: "Keep exploring this drawing"
            Layout.alignment: Qt.AlignHCenter
            onClicked: Studio.celebration = false
        }
    }
}
