pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import MarbleCove

// The whole curriculum at once: each world's progress, its reward canvas, and a jump into it.
Rectangle {
    id: map
    implicitWidth: 760
    implicitHeight: 720
    color: Theme.mapBackground
    radius: 18

    // Untyped, so that the list's script methods (indexOf) are there for tooling too.
    readonly property var completed: Studio.completed

    function earned(world) {
        let count = 0
        for (let i = 6 * world; i < 6 * world + 6; ++i) {
            if (map.completed.indexOf(i) >= 0)
                ++count
        }
        return count
    }

    // A world opens with the last mission of the world before it.
    function unlocked(world) {
        return world === 0 || map.completed.indexOf(6 * world - 1) >= 0
    }

    // The first mission of the world not yet earned; the world's first when all are.
    function explore(world) {
        let target = 6 * world
        for (let i = 6 * world; i < 6 * world + 6; ++i) {
            if (map.completed.indexOf(i) < 0) {
                target = i
                break
            }
        }
        Studio.select(target)
        Studio.map = false
    }

    ColumnLayout {
        anchors.fill: parent
        anchors.margins: 28
        spacing: 20

        SheetHeader {
            name: "map"
            title: "A whole world of possibilities"
            Layout.fillWidth: true
            onDone: Studio.map = false
        }
        Text {
            text: "Five worlds. Thirty missions. One very curious turtle."
            font.pixelSize: 14
            color: Theme.secondary
        }

        ScrollView {
            id: scroller
            objectName: "mapScroller"
            Layout.fillWidth: true
            Layout.fillHeight: true
            contentWidth: availableWidth
            clip: true

            Column {
                width: scroller.availableWidth
                spacing: 14

                Repeater {
                    model: Catalog.worlds

                    Rectangle {
                        id: card
                        required property var modelData
                        required property int index
                        readonly property int earned: map.earned(index)
                        readonly property bool open: map.unlocked(index)
                        readonly property var reward: Catalog.themes[index + 1]

                        objectName: "worldCard_" + index
                        width: parent.width
                        implicitHeight: row.implicitHeight + 40
                        radius: 20
                        color: Theme.card

                        RowLayout {
                            id: row
                            anchors.fill: parent
                            anchors.margins: 20
                            spacing: 18

                            Rectangle {
                                implicitWidth: 60
                                implicitHeight: 60
                                radius: 16
                                color: Theme.mint
                                SymbolIcon {
                                    anchors.centerIn: parent
                                    name: card.modelData.symbol
                                    size: 30
                                    color: Theme.violet
                                }
                            }

                            ColumnLayout {
                                spacing: 6
                                Layout.fillWidth: true

                                Text {
                                    text: card.modelData.title
                                    font.family: Theme.roundedFont
                                    font.pixelSize: 20
                                    font.bold: true
                                    color: Theme.ink
                                }
                                Text {
                                    text: card.modelData.description
                                    font.pixelSize: 14
                                    color: Theme.ink
                                    wrapMode: Text.WordWrap
                                    Layout.fillWidth: true
                                }
                                ProgressBar {
                                    id: progress
                                    objectName: "worldProgress_" + card.index
                                    from: 0
                                    to: 6
                                    value: card.earned
                                    Accessible.name: card.earned + " / 6 badges"
                                    Layout.fillWidth: true
                                    background: Rectangle { implicitHeight: 6; radius: 3; color: Theme.divider }
                                    contentItem: Item {
                                        implicitHeight: 6
                                        Rectangle {
                                            width: progress.visualPosition * parent.width
                                            height: parent.height
                                            radius: 3
                                            color: Theme.violet
                                        }
                                    }
                                }
                                Text {
                                    objectName: "worldSummary_" + card.index
                                    text: card.earned + " / 6 badges \u00b7 Reward: " + card.reward.name + " canvas"
                                    font.pixelSize: 12
                                    color: Theme.secondary
                                }
                            }

                            StudioButton {
                                objectName: "exploreButton_" + card.index
                                kind: "prominent"
                                text: card.open ? "Explore" : "Locked"
                                enabled: card.open
                                // The same width either way, so every progress bar ends at the same place.
                                Layout.preferredWidth: 92
                                onClicked: map.explore(card.index)
                            }
                        }
                    }
                }
            }
        }
    }
}
