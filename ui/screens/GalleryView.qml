pragma ComponentBehavior: Bound

import QtCore
import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Dialogs
import QtQuick.Layouts
import MarbleCove

// The child's saved creations as cards; choosing one reopens it in the studio for remixing.
Item {
    id: gallery
    implicitWidth: 760
    implicitHeight: 700

    // A picture was refused; an accepted one closes the sheet.
    property bool refused: false

    FileDialog {
        id: openDialog
        objectName: "openPictureDialog"
        title: "Open a picture"
        fileMode: FileDialog.OpenFile
        nameFilters: ["Marble Cove pictures (*.png)"]
        acceptLabel: "Open"
        currentFolder: StandardPaths.writableLocation(StandardPaths.PicturesLocation)
        onAccepted: {
            Studio.openPicture(Catalog.localPath(selectedFile))
            gallery.refused = Studio.gallery
        }
    }

    CreationModel {
        id: creations
        studio: Studio
    }

    ColumnLayout {
        anchors.fill: parent
        anchors.margins: 28
        spacing: 18

        SheetHeader {
            name: "gallery"
            title: Studio.galleryTitle
            titleSize: 28
            Layout.fillWidth: true
            onDone: Studio.gallery = false
        }
        RowLayout {
            spacing: 12
            Layout.fillWidth: true
            Text {
                text: "Your ideas live here. Open a creation to make something new from it."
                font.pixelSize: 14
                color: Theme.secondary
                Layout.fillWidth: true
            }
            StudioButton {
                objectName: "openPictureButton"
                text: "Open a picture\u2026"
                symbol: "photo.on.rectangle.angled"
                onClicked: openDialog.open()
            }
        }
        // Why a picture could not be opened; the status line is hidden behind this sheet.
        Text {
            objectName: "openPictureMessage"
            visible: gallery.refused
            text: Studio.message
            font.pixelSize: 14
            font.bold: true
            color: Theme.violet
            wrapMode: Text.WordWrap
            Layout.fillWidth: true
        }

        Item {
            objectName: "galleryEmptyState"
            visible: creations.count === 0
            Layout.fillWidth: true
            Layout.fillHeight: true

            Column {
                anchors.centerIn: parent
                spacing: 16

                SymbolIcon {
                    name: "photo.on.rectangle.angled"
                    size: 55
                    color: Theme.violet
                    anchors.horizontalCenter: parent.horizontalCenter
                }
                Text {
                    text: "Your gallery is waiting for its first masterpiece."
                    font.pixelSize: Theme.title3Size
                    color: Theme.ink
                    anchors.horizontalCenter: parent.horizontalCenter
                }
                Text {
                    text: "Run some code, then choose Save creation."
                    font.pixelSize: 14
                    color: Theme.secondary
                    anchors.horizontalCenter: parent.horizontalCenter
                }
                StudioButton {
                    objectName: "goToStudioButton"
                    kind: "prominent"
                    text: "Go to the studio"
                    anchors.horizontalCenter: parent.horizontalCenter
                    onClicked: Studio.gallery = false
                }
            }
        }

        // Cards are made only as they scroll into view, so hundreds of creations cost a screenful.
        GridView {
            id: grid
            objectName: "creationGrid"
            readonly property real gap: 20
            // Every card has room for a two-line title and single-line texts, so the row height is
            // known up front.
            readonly property real cardHeight: 14 + 180 + 10 + 2 * titleLine.height + 10 + dateLine.height + 10
                                               + linkLine.height + 14
            visible: creations.count > 0
            Layout.fillWidth: true
            Layout.fillHeight: true
            clip: true
            model: creations
            // No current card: a view keeps its current item alive wherever it scrolls.
            currentIndex: -1
            cellWidth: width / 2
            cellHeight: cardHeight + gap
            boundsBehavior: Flickable.StopAtBounds
            ScrollBar.vertical: ScrollBar { objectName: "creationScrollBar" }

            FontMetrics { id: titleLine; font.pixelSize: 17; font.bold: true }
            FontMetrics { id: dateLine; font.pixelSize: 12 }
            FontMetrics { id: linkLine; font.pixelSize: 13; font.bold: true }

            delegate: Item {
                id: cell
                required property int index
                required property string title
                required property string dateText
                required property color themeColor
                required property var strokes
                property bool titleCut: false

                width: grid.cellWidth
                height: grid.cellHeight

                StudioButton {
                    objectName: "creationCard_" + cell.index
                    kind: "plain"
                    // Half the gap on each side of the middle, none at the outer edges.
                    x: cell.index % 2 === 0 ? 0 : grid.gap / 2
                    width: cell.width - grid.gap / 2
                    height: grid.cardHeight
                    padding: 14
                    leftPadding: 14
                    rightPadding: 14
                    Accessible.name: cell.title
                    // A title too long even for two lines is shown whole on hover.
                    tooltip: cell.titleCut ? cell.title : ""
                    onClicked: creations.open(cell.index)

                    contentItem: Column {
                        spacing: 10
                        DrawingSurface {
                            objectName: "creationThumbnail_" + cell.index
                            width: parent.width
                            height: 180
                            strokes: cell.strokes
                            bounds: cell.strokes
                            background: cell.themeColor
                            grid: false
                        }
                        Text {
                            objectName: "creationTitle_" + cell.index
                            text: cell.title
                            font.pixelSize: 17
                            font.bold: true
                            color: Theme.ink
                            wrapMode: Text.Wrap
                            maximumLineCount: 2
                            elide: Text.ElideRight
                            width: parent.width
                            height: 2 * titleLine.height
                            onTruncatedChanged: cell.titleCut = truncated
                        }
                        Text {
                            objectName: "creationDate_" + cell.index
                            text: cell.dateText
                            font.pixelSize: 12
                            color: Theme.secondary
                        }
                        Text {
                            text: "Open & remix \u2192"
                            font.pixelSize: 13
                            font.bold: true
                            color: Theme.violet
                        }
                    }
                    background: Rectangle {
                        radius: 18
                        color: Qt.rgba(Theme.gray.r, Theme.gray.g, Theme.gray.b, 0.04)
                    }
                }
            }
        }
    }
}
