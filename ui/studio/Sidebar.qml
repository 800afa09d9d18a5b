pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import MarbleCove

// The child's route through the worlds: the map, one world's missions, free play and help.
ColumnLayout {
    id: sidebar
    spacing: 16

    property int browsedWorld: 0

    StudioButton {
        objectName: "mapButton"
        kind: "prominent"
        text: "Adventure map"
        symbol: "map.fill"
        textSize: 15
        textWeight: Font.Bold
        leading: true
        padding: 10
        Layout.fillWidth: true
        onClicked: Studio.map = true
    }

    StudioComboBox {
        id: worldPicker
        objectName: "worldPicker"
        Layout.fillWidth: true
        model: Catalog.worldLabels
        currentIndex: sidebar.browsedWorld
        onActivated: index => sidebar.browsedWorld = index
        Accessible.name: "Browse challenge worlds"
    }

    Text {
        text: Catalog.worlds[sidebar.browsedWorld].description
        font.pixelSize: 13
        color: Theme.secondary
        wrapMode: Text.WordWrap
        Layout.fillWidth: true
    }

    StudioScrollView {
        id: missionList
        objectName: "missionList"
        fade: Theme.sidebar
        Layout.fillWidth: true
        Layout.fillHeight: true
        Layout.minimumHeight: 120

        Column {
            width: missionList.availableWidth
            spacing: 7
            Repeater {
                model: 6
                StudioButton {
                    id: row
                    required property int index
                    readonly property int mission: sidebar.browsedWorld * 6 + index
                    readonly property bool done: Studio.badges >= 0 && Studio.isCompleted(mission)
                    // Badges must be part of the result: a bare read is dropped by the compiler,
                    // and the row would not open when a badge is earned.
                    readonly property bool open: Studio.badges >= 0 && Studio.isMissionOpen(mission)
                    objectName: "mission_" + mission
                    kind: "plain"
                    width: parent.width
                    padding: 10
                    leftPadding: 10
                    rightPadding: 10
                    enabled: open
                    opacity: open ? 1 : 0.5
                    Accessible.name: Catalog.missions[mission].title + (done ? ", earned" : (open ? ", open" : ", locked"))
                    Accessible.description: Catalog.missions[mission].subtitle
                    // Two lines fit nearly every title; the rare longer one is shown whole on hover.
                    property bool titleCut: false
                    property bool subtitleCut: false
                    tooltip: titleCut || subtitleCut ? Catalog.missions[mission].title + ": " + Catalog.missions[mission].subtitle : ""
                    onClicked: Studio.select(mission)
                    contentItem: RowLayout {
                        spacing: 10
                        SymbolIcon {
                            objectName: "missionMark_" + row.mission
                            name: row.done ? "checkmark.circle.fill" : (row.open ? "circle" : "lock.fill")
                            color: row.done ? Theme.green : Theme.violet
                            size: 18
                            Layout.alignment: Qt.AlignTop
                        }
                        ColumnLayout {
                            spacing: 3
                            Layout.fillWidth: true
                            Text {
                                objectName: "missionTitle_" + row.mission
                                text: Catalog.missions[row.mission].title
                                font.pixelSize: 14
                                font.bold: true
                                color: Theme.ink
                                wrapMode: Text.Wrap
                                maximumLineCount: 2
                                elide: Text.ElideRight
                                Layout.fillWidth: true
                                onTruncatedChanged: row.titleCut = truncated
                            }
                            Text {
                                objectName: "missionSubtitle_" + row.mission
                                text: Catalog.missions[row.mission].subtitle
                                font.pixelSize: 12
                                color: Theme.secondary
                                wrapMode: Text.Wrap
                                maximumLineCount: 2
                                elide: Text.ElideRight
                                Layout.fillWidth: true
                                onTruncatedChanged: row.subtitleCut = truncated
                            }
                        }
                    }
                    background: Rectangle {
                        radius: 12
                        color: !Studio.free && Studio.mission === row.mission ? Theme.highlightFill
                                                                          : "transparent"
                    }
                }
            }
        }
    }

    StudioButton {
        objectName: "freePlayButton"
        kind: "plain"
        text: "Free play studio"
        symbol: "wand.and.stars"
        textWeight: Font.Bold
        leading: true
        padding: 12
        leftPadding: 12
        Layout.fillWidth: true
        background: Rectangle {
            radius: 12
            color: Studio.free ? Theme.mint : Theme.card
        }
        onClicked: Studio.enterFree()
    }

    StudioButton {
        objectName: "handbookSidebarButton"
        kind: "plain"
        text: "Coder\u2019s handbook"
        symbol: "book.closed.fill"
        textWeight: Font.DemiBold
        leftPadding: 10
        rightPadding: 10
        onClicked: Studio.guide = true
    }

    StudioButton {
        objectName: "welcomeGuideButton"
        kind: "plain"
        text: "Welcome guide"
        symbol: "sparkles"
        textWeight: Font.DemiBold
        leftPadding: 10
        rightPadding: 10
        onClicked: Studio.replayWelcome()
    }

    Rectangle {
        radius: 14
        color: Theme.card
        Layout.fillWidth: true
        implicitHeight: progressCard.implicitHeight + 28
        ColumnLayout {
            id: progressCard
            anchors.fill: parent
            anchors.margins: 14
            spacing: 10
            Text {
                text: "Small steps. Big magic."
                font.family: Theme.roundedFont
                font.pixelSize: 14
                font.bold: true
                color: Theme.ink
            }
            ProgressBar {
                id: explored
                from: 0
                to: Catalog.missions.length
                value: Studio.badges
                Accessible.name: Studio.badges + " / " + Catalog.missions.length + " missions explored"
                Layout.fillWidth: true
                background: Rectangle { implicitHeight: 6; radius: 3; color: Theme.divider }
                contentItem: Item {
                    implicitHeight: 6
                    Rectangle {
                        width: explored.visualPosition * parent.width
                        height: parent.height
                        radius: 3
                        color: Theme.violet
                    }
                }
            }
            Text {
                objectName: "progressText"
                text: Studio.badges + " / " + Catalog.missions.length + " missions explored"
                font.pixelSize: 12
                color: Theme.secondary
            }
        }
    }
}
