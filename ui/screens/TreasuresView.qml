pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import MarbleCove

// Everything the missions have earned: every badge, the canvases to choose from, the royal turtle.
Item {
    id: shelf
    implicitWidth: 740
    implicitHeight: 730

    readonly property int count: Studio.badges
    // Untyped, so that the list's script methods (indexOf) are there for tooling too.
    readonly property var completed: Studio.completed

    component SectionTitle: Text {
        font.pixelSize: Theme.title3Size
        font.bold: true
        color: Theme.ink
    }

    ColumnLayout {
        anchors.fill: parent
        anchors.margins: 28
        spacing: 18

        SheetHeader {
            name: "treasures"
            title: Studio.treasureTitle
            titleSize: 27
            Layout.fillWidth: true
            onDone: Studio.collection = false
        }
        Text {
            objectName: "treasureSummary"
            text: Studio.rank + " \u00b7 " + (shelf.count * 100) + " XP \u00b7 " + shelf.count + (shelf.count === 1 ? " badge" : " badges")
            font.pixelSize: 14
            font.weight: Font.DemiBold
            color: Theme.violet
        }

        ScrollView {
            id: scroller
            objectName: "treasureScroller"
            Layout.fillWidth: true
            Layout.fillHeight: true
            contentWidth: availableWidth
            clip: true

            Column {
                width: scroller.availableWidth
                spacing: 22

                Repeater {
                    model: Catalog.worlds

                    Column {
                        id: world
                        required property var modelData
                        required property int index
                        width: parent.width
                        spacing: 12

                        SectionTitle { text: world.modelData.title }
                        Grid {
                            id: badges
                            columns: 3
                            spacing: 12
                            width: parent.width

                            Repeater {
                                model: 6

                                Rectangle {
                                    id: cell
                                    required property int index
                                    readonly property int mission: world.index * 6 + index
                                    readonly property bool earned: shelf.completed.indexOf(mission) >= 0

                                    objectName: "badge_" + mission
                                    width: (badges.width - 2 * badges.spacing) / 3
                                    height: Math.max(90, badge.implicitHeight + 28)
                                    radius: 16
                                    color: earned ? Qt.rgba(Theme.mint.r, Theme.mint.g, Theme.mint.b, 0.6)
                                                  : Qt.rgba(Theme.gray.r, Theme.gray.g, Theme.gray.b, 0.06)

                                    Column {
                                        id: badge
                                        anchors.centerIn: parent
                                        width: parent.width - 28
                                        spacing: 8

                                        SymbolIcon {
                                            name: cell.earned ? "seal.fill" : "lock.circle"
                                            size: 30
                                            color: cell.earned ? Theme.violet : Theme.gray
                                            anchors.horizontalCenter: parent.horizontalCenter
                                        }
                                        Text {
                                            text: Catalog.missions[cell.mission].title
                                            font.pixelSize: 13
                                            font.bold: true
                                            color: Theme.ink
                                            width: parent.width
                                            wrapMode: Text.WordWrap
                                            horizontalAlignment: Text.AlignHCenter
                                        }
                                        Text {
                                            objectName: "badgeState_" + cell.mission
                                            text: cell.earned ? "Earned!" : "Mission " + (cell.mission + 1)
                                            font.pixelSize: 12
                                            color: Theme.secondary
                                            width: parent.width
                                            horizontalAlignment: Text.AlignHCenter
                                        }
                                    }
                                }
                            }
                        }
                    }
                }

                Column {
                    width: parent.width
                    spacing: 12

                    SectionTitle { text: "Canvas collection" }
                    Grid {
                        id: canvases
                        columns: 3
                        spacing: 12
                        width: parent.width

                        Repeater {
                            model: Catalog.themes

                            StudioButton {
                                id: canvas
                                required property var modelData
                                required property int index
                                readonly property bool available: (Studio.badges, Studio.isThemeAvailable(index))
                                readonly property bool current: Studio.theme === index

                                objectName: "canvasCard_" + index
                                kind: "plain"
                                width: (canvases.width - 2 * canvases.spacing) / 3
                                padding: 16
                                leftPadding: 16
                                rightPadding: 16
                                enabled: available
                                Accessible.name: modelData.name
                                onClicked: Studio.theme = index

                                contentItem: Column {
                                    spacing: 8
                                    SymbolIcon {
                                        objectName: "canvasMark_" + canvas.index
                                        name: canvas.current ? "checkmark.seal.fill" : "paintpalette.fill"
                                        size: Theme.title2Size
                                        color: Theme.ink
                                        anchors.horizontalCenter: parent.horizontalCenter
                                    }
                                    Text {
                                        text: canvas.modelData.name
                                        font.pixelSize: 14
                                        font.bold: true
                                        color: Theme.ink
                                        anchors.horizontalCenter: parent.horizontalCenter
                                    }
                                    Text {
                                        objectName: "canvasState_" + canvas.index
                                        text: canvas.available ? "Use this canvas"
                                                               : "Unlock at " + canvas.modelData.unlock + " badges"
                                        font.pixelSize: 12
                                        color: Theme.ink
                                        anchors.horizontalCenter: parent.horizontalCenter
                                    }
                                }
                                background: Rectangle {
                                    radius: 14
                                    color: canvas.modelData.color
                                    border.color: Theme.border
                                }
                            }
                        }
                    }
                }

                Column {
                    width: parent.width
                    spacing: 12

                    SectionTitle { text: "Turtle companion" }
                    Text {
                        objectName: "royalCompanionLine"
                        text: shelf.count >= 3 ? "\u{1F451} Your Majesty is unlocked. Choose your royal turtle in the studio!"
                                               : "\u{1F451} Earn 3 badges to unlock Your Majesty."
                        font.pixelSize: 14
                        color: Theme.ink
                        width: parent.width
                        wrapMode: Text.WordWrap
                    }
                }
            }
        }
    }
}
