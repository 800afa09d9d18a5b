import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import MarbleCove

// Where the turtle draws: the canvas, the status line, keeping and exporting, and the companion.
ColumnLayout {
    id: stage
    spacing: 14

    signal exportRequested()
    // A click on the drawing asks the editor to select the command that drew this line.
    signal strokePicked(var place)

    // The strokes the command at the editor's cursor drew.
    property list<int> emphasis: []

    readonly property var theme: Catalog.themes[Studio.theme]

    RowLayout {
        Layout.fillWidth: true
        Text {
            text: "The playground"
            font.pixelSize: 16
            font.bold: true
            color: Theme.ink
        }
        Item { Layout.fillWidth: true }
        StudioButton {
            id: themeButton
            objectName: "themeMenuButton"
            compact: true
            text: stage.theme.name
            symbol: "paintpalette"
            onClicked: themeMenu.open()

            StudioMenu {
                id: themeMenu
                objectName: "themeMenu"
                // Opens under the button, flush with its right edge, so it stays inside the window.
                x: themeButton.width - width
                y: themeButton.height
                Instantiator {
                    model: Catalog.themes
                    delegate: StudioMenuItem {
                        required property var modelData
                        required property int index
                        objectName: "theme_" + index
                        text: Catalog.themeMenuLabel(index, Studio.badges)
                        // Badges take part in the result so that a new badge re-enables the entry.
                        enabled: Studio.badges >= 0 && Studio.isThemeAvailable(index)
                        checkable: true
                        checked: Studio.theme === index
                        onTriggered: Studio.theme = index
                    }
                    onObjectAdded: (index, object) => themeMenu.insertItem(index, object)
                    onObjectRemoved: (index, object) => themeMenu.removeItem(object)
                }
            }
        }
    }

    DrawingSurface {
        id: canvas
        objectName: "canvas"
        Layout.fillWidth: true
        Layout.preferredHeight: 340
        strokes: Studio.strokes
        ghost: Studio.showTarget && !Studio.free ? Studio.targetStrokes : Catalog.noStrokes
        bounds: Studio.free ? Studio.plannedStrokes : Catalog.joinStrokes(Studio.plannedStrokes, Studio.targetStrokes)
        point: Studio.point
        hasPoint: true
        turtle: Studio.picture(Studio.turtle)
        heading: Studio.heading
        background: stage.theme.color
        grid: true
        Accessible.role: Accessible.Graphic
        Accessible.name: "Drawing canvas, " + Studio.strokes.length + " lines"

        StageMarks {
            id: marks
            objectName: "stageMarks"
            anchors.fill: parent
            strokes: Studio.strokes
            bounds: canvas.bounds
            ghost: canvas.ghost
            emphasis: stage.emphasis
            missing: Studio.showDifference ? Studio.missingStrokes : Catalog.noStrokes
            extra: Studio.showDifference ? Studio.extraStrokes : Catalog.noStrokes
            emphasisColor: Theme.emphasis
            missingColor: Theme.missingLine
            extraColor: Theme.extraLine

            Timer {
                id: flashTimer
                interval: 900
                onTriggered: marks.flash = -1
            }
            MouseArea {
                anchors.fill: parent
                enabled: !Studio.running
                onClicked: mouse => {
                    const picked = marks.strokeAt(mouse.x, mouse.y)
                    const place = picked >= 0 ? Studio.strokePlace(picked) : ({})
                    if (place.line === undefined)
                        return
                    marks.flash = picked
                    flashTimer.restart()
                    stage.strokePicked(place)
                }
            }
        }

        DifferenceLegend {
            objectName: "differenceLegend"
            visible: Studio.showDifference
            anchors.left: parent.left
            anchors.right: parent.right
            anchors.bottom: parent.bottom
            anchors.margins: 10
            sentence: Studio.differenceSentence
            showsMissing: Studio.missingStrokes.length > 0
            showsExtra: Studio.extraStrokes.length > 0
        }
    }

    RowLayout {
        spacing: 8
        Layout.fillWidth: true
        SymbolIcon {
            name: Studio.running ? "sparkles" : "bubble.left.fill"
            size: 18
            color: Theme.violet
            Layout.alignment: Qt.AlignTop
        }
        Text {
            objectName: "statusLine"
            text: Studio.message
            // An alert is read out as soon as its text changes, wherever the focus is.
            Accessible.role: Accessible.AlertMessage
            Accessible.name: Studio.spokenMessage
            font.pixelSize: 14
            color: Theme.ink
            wrapMode: Text.WordWrap
            Layout.fillWidth: true
        }
        StudioButton {
            objectName: "differenceButton"
            compact: true
            visible: Studio.differenceSentence.length > 0
            text: Studio.showDifference ? "Hide differences" : "Show what\u2019s different"
            symbol: "wand.and.stars"
            Layout.alignment: Qt.AlignTop
            onClicked: Studio.showDifference = !Studio.showDifference
        }
    }

    // Stays while changes cannot reach the disk; the status line goes on as usual above it.
    Rectangle {
        objectName: "saveNotice"
        visible: !Studio.canSave
        Layout.fillWidth: true
        implicitHeight: noticeText.implicitHeight + 20
        radius: 12
        color: Qt.rgba(1, 0.8, 0, 0.16)
        border.color: Qt.rgba(1, 0.8, 0, 0.6)
        Accessible.role: Accessible.AlertMessage
        Accessible.name: noticeTitle.text

        RowLayout {
            id: noticeText
            anchors.fill: parent
            anchors.margins: 10
            spacing: 8
            SymbolIcon {
                name: "exclamationmark.triangle"
                size: 18
                color: Theme.ink
                Layout.alignment: Qt.AlignTop
            }
            ColumnLayout {
                spacing: 2
                Layout.fillWidth: true
                Text {
                    id: noticeTitle
                    text: "I can’t save right now, so your work will be lost when you close me. Ask a grown-up to help."
                    font.pixelSize: 14
                    color: Theme.ink
                    wrapMode: Text.WordWrap
                    Layout.fillWidth: true
                }
                Text {
                    objectName: "saveProblem"
                    text: Studio.saveProblem
                    font.pixelSize: 11
                    color: Theme.secondary
                    wrapMode: Text.WrapAnywhere
                    Layout.fillWidth: true
                }
            }
        }
    }

    RowLayout {
        spacing: 10
        StudioButton {
            objectName: "saveCreationButton"
            compact: true
            text: "Save creation"
            symbol: "heart.square"
            enabled: !Studio.running && Studio.strokes.length > 0 && Studio.drawingSource.length > 0
                     && Studio.drawingSource === Studio.code
            onClicked: {
                Studio.creationTitle = Studio.free ? "My masterpiece" : Catalog.missions[Studio.mission].title
                Studio.saving = true
            }
        }
        StudioButton {
            objectName: "exportButton"
            compact: true
            text: "Export picture"
            symbol: "square.and.arrow.up"
            enabled: !Studio.running && Studio.strokes.length > 0
            onClicked: if (Studio.prepareExport()) stage.exportRequested()
        }
    }

    ColumnLayout {
        spacing: 6
        Layout.fillWidth: true
        RowLayout {
            Layout.fillWidth: true
            Text {
                text: "CHOOSE YOUR SIDEKICK"
                font.pixelSize: 11
                font.bold: true
                color: Theme.ink
            }
            Item { Layout.fillWidth: true }
            StudioButton {
                objectName: "companionEditButton"
                compact: true
                kind: "plain"
                text: Studio.turtleName
                symbol: "pencil"
                tooltip: "Choose or rename your turtle"
                onClicked: {
                    Studio.stop()
                    Studio.companionSettings = true
                }
            }
        }
        RowLayout {
            spacing: 10
            Repeater {
                model: 4
                Rectangle {
                    id: card
                    required property int index
                    // Badges take part in the result so that the third badge unlocks the card.
                    readonly property bool unlocked: Studio.badges >= 0 && Studio.isTurtleUnlocked(index)
                    objectName: "companionCard_" + index
                    implicitWidth: 84
                    implicitHeight: 78
                    radius: 12
                    color: Theme.card
                    border.width: Studio.turtle === index ? 2 : 1
                    border.color: Studio.turtle === index ? Qt.rgba(0.2, 0.78, 0.35, 0.5) : Theme.divider
                    opacity: unlocked ? 1 : 0.45
                    activeFocusOnTab: unlocked
                    Accessible.role: Accessible.Button
                    Accessible.name: Studio.shownNames[index]
                    Accessible.onPressAction: choose()
                    Keys.onSpacePressed: choose()
                    Keys.onReturnPressed: choose()
                    Keys.onEnterPressed: choose()

                    function choose() {
                        if (unlocked)
                            Studio.turtle = index
                    }

                    FocusRing {
                        shown: card.activeFocus
                        radius: card.radius + gap
                    }

                    PictureView {
                        image: Studio.picture(card.index)
                        width: 58
                        height: 58
                        anchors.horizontalCenter: parent.horizontalCenter
                        y: 4
                    }
                    Text {
                        text: Studio.shownNames[card.index]
                        font.pixelSize: 11
                        color: Theme.ink
                        elide: Text.ElideRight
                        width: parent.width - 8
                        horizontalAlignment: Text.AlignHCenter
                        anchors.horizontalCenter: parent.horizontalCenter
                        anchors.bottom: parent.bottom
                        anchors.bottomMargin: 3
                    }
                    MouseArea {
                        anchors.fill: parent
                        enabled: card.unlocked
                        cursorShape: Qt.PointingHandCursor
                        onClicked: card.choose()
                    }
                }
            }
        }
    }
}
