import QtQuick
import QtQuick.Layouts
import MarbleCove

// Which mission (or free play) the child is in, and whether its badge is earned.
RowLayout {
    id: banner
    readonly property var current: Catalog.missions[Studio.mission]

    ColumnLayout {
        spacing: 5
        Text {
            objectName: "bannerKicker"
            text: Studio.free ? "YOUR IDEAS. YOUR RULES."
                              : "MISSION " + (Studio.mission + 1) + " OF " + Catalog.missions.length
                                + "  \u2022  " + Catalog.worlds[Math.floor(Studio.mission / 6)].title.toUpperCase()
            font.pixelSize: 12
            font.weight: Font.Black
            font.letterSpacing: 1
            color: Theme.violet
        }
        Text {
            objectName: "bannerTitle"
            text: Studio.free ? "The imagination station" : banner.current.title
            font.family: Theme.roundedFont
            font.pixelSize: 29
            font.weight: Font.Black
            color: Theme.ink
        }
    }

    Item { Layout.fillWidth: true }

    Rectangle {
        objectName: "badgeCapsule"
        visible: !Studio.free
        radius: height / 2
        color: Qt.rgba(0.42, 0.28, 0.88, 0.09)
        implicitWidth: badge.implicitWidth + 20
        implicitHeight: badge.implicitHeight + 20
        Text {
            id: badge
            anchors.centerIn: parent
            text: "\u2713 " + (Studio.badges >= 0 && Studio.isCompleted(Studio.mission) ? "Earned" : "+100 XP")
            font.pixelSize: 14
            font.bold: true
            color: Theme.violet
        }
    }
}
