import QtCore
import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Dialogs
import QtQuick.Layouts
import MarbleCove

// The studio screen: header, sidebar, the mission and the two working panes, and every sheet.
Rectangle {
    id: content
    color: Theme.window

    // Follows the mission when it changes, but starts on the first world whatever the mission.
    Connections {
        target: Studio
        function onMissionChanged() { sidebar.browsedWorld = Math.floor(Studio.mission / 6) }
    }

    ColumnLayout {
        anchors.fill: parent
        spacing: 0

        StudioHeader { Layout.fillWidth: true }
        Rectangle {
            Layout.fillWidth: true
            implicitHeight: 1
            color: Theme.divider
        }

        RowLayout {
            spacing: 0
            Layout.fillWidth: true
            Layout.fillHeight: true

            Rectangle {
                color: Theme.sidebar
                Layout.preferredWidth: 235
                Layout.fillHeight: true
                Sidebar {
                    id: sidebar
                    anchors.fill: parent
                    anchors.margins: 18
                }
            }

            StudioScrollView {
                id: main
                objectName: "mainColumn"
                Layout.fillWidth: true
                Layout.fillHeight: true

                ColumnLayout {
                    width: main.availableWidth
                    spacing: 16

                    Item { implicitHeight: 8 }
                    MissionBanner {
                        Layout.fillWidth: true
                        Layout.leftMargin: 24
                        Layout.rightMargin: 24
                    }
                    GoalCard {
                        Layout.fillWidth: true
                        Layout.leftMargin: 24
                        Layout.rightMargin: 24
                    }
                    RowLayout {
                        spacing: 18
                        Layout.fillWidth: true
                        Layout.leftMargin: 24
                        Layout.rightMargin: 24
                        Layout.alignment: Qt.AlignTop

                        Rectangle {
                            radius: 20
                            color: Theme.card
                            Layout.preferredWidth: 320
                            Layout.alignment: Qt.AlignTop
                            implicitHeight: editor.implicitHeight + 36
                            EditorPane {
                                id: editor
                                anchors.fill: parent
                                anchors.margins: 18
                            }
                        }
                        Rectangle {
                            radius: 20
                            color: Theme.card
                            Layout.fillWidth: true
                            Layout.alignment: Qt.AlignTop
                            implicitHeight: stage.implicitHeight + 36
                            StagePane {
                                id: stage
                                anchors.fill: parent
                                anchors.margins: 18
                                // The strokes the command at the editor's cursor drew stand out.
                                emphasis: {
                                    const place = editor.cursorPlace
                                    if (place.line === undefined || Studio.running || Studio.strokes.length === 0)
                                        return []
                                    return Studio.code === Studio.drawingSource || Studio.stepIndex > 0
                                        ? Studio.strokesMadeAt(place.line, place.column) : []
                                }
                                onStrokePicked: place => editor.selectPlace(place)
                                onExportRequested: exportDialog.start()
                            }
                        }
                    }
                    RowLayout {
                        objectName: "encouragement"
                        spacing: 6
                        Layout.leftMargin: 24
                        SymbolIcon { name: "heart.fill"; size: 13; color: Theme.secondary }
                        Text {
                            text: "Every experiment teaches you something. Take your time and make it yours."
                            font.pixelSize: 13
                            color: Theme.secondary
                        }
                    }
                    Item { implicitHeight: 8 }
                }
            }
        }
    }

    // The desktop's own save dialog where the platform offers one, else Qt's.
    FileDialog {
        id: exportDialog
        objectName: "exportDialog"
        // The name the child gave the picture; it stays while they move between folders.
        property string fileName: "Marble Cove creation.png"
        // The name field of Qt's own dialog once Return in it saves, as in every desktop's dialog.
        property var returnSaves: null
        title: "Export picture"
        fileMode: FileDialog.SaveFile
        nameFilters: ["PNG picture (*.png)", "SVG drawing (*.svg)"]
        defaultSuffix: selectedNameFilter.index === 1 ? "svg" : "png"
        acceptLabel: "Save"

        function start() {
            fileName = "Marble Cove creation.png"
            currentFolder = Catalog.exportFolder()
            selectedFile = Catalog.fileIn(currentFolder, fileName)
            open()
            const field = Catalog.shownNameField(exportDialog)
            if (field && field !== returnSaves) {
                field.accepted.connect(accept)
                returnSaves = field
            }
        }

        // Qt's own dialog chooses the folder the child clicks, or nothing in a folder they open,
        // which would empty the name field or show the folder's name there and make Save open
        // that folder, and it reports a typed name as a bare path: the picture keeps its name,
        // in the folder on show, as a file the export can write.
        onSelectedFileChanged: {
            if (!visible)
                return
            const name = Catalog.pictureName(selectedFile)
            if (name.length > 0)
                fileName = name
            if (name.length === 0 || !selectedFile.toString().startsWith("file:"))
                Catalog.selectInShownDialog(exportDialog, Catalog.fileIn(currentFolder, fileName))
        }
        onCurrentFolderChanged: if (visible) Catalog.selectInShownDialog(exportDialog, Catalog.fileIn(currentFolder, fileName))
        onAccepted: {
            const path = Catalog.localPath(selectedFile)
            if (path.toLowerCase().endsWith(".svg"))
                Studio.exportSVG(path)
            else
                Studio.exportPNG(path)
        }
    }

    // A picture dropped on the window opens like one chosen in the gallery.
    DropArea {
        objectName: "pictureDropArea"
        anchors.fill: parent
        onEntered: drag => drag.accepted = drag.hasUrls
        onDropped: drop => {
            if (drop.hasUrls)
                Studio.openPicture(Catalog.localPath(drop.urls[0]))
        }
    }

    // The studio dims behind the save dialog as it does behind every sheet.
    Rectangle {
        objectName: "exportScrim"
        anchors.fill: parent
        color: Theme.scrim
        visible: exportDialog.visible
    }

    Sheet {
        objectName: "playerSettingsSheet"
        title: "Your profile"
        shown: Studio.playerSettings
        content: Component { PlayerSettingsView {} }
        onDismissed: {
            Studio.playerSettings = false
            Studio.finishProfileDismissal()
        }
    }
    Sheet {
        objectName: "welcomeSheet"
        title: "Welcome guide"
        shown: Studio.welcome
        dismissable: !Studio.needsIntroduction
        content: Component { WelcomeView {} }
        onDismissed: Studio.welcome = false
    }
    Sheet {
        objectName: "companionSettingsSheet"
        title: "Your turtle"
        shown: Studio.companionSettings
        content: Component { CompanionSettingsView {} }
        onDismissed: Studio.companionSettings = false
    }
    Sheet {
        objectName: "collectionSheet"
        title: "Treasures"
        shown: Studio.collection
        content: Component { TreasuresView {} }
        onDismissed: Studio.collection = false
    }
    Sheet {
        objectName: "celebrationSheet"
        title: "Celebration"
        shown: Studio.celebration
        content: Component { CelebrationDialog {} }
        onDismissed: Studio.celebration = false
    }
    Sheet {
        objectName: "gallerySheet"
        title: "My creations"
        shown: Studio.gallery
        content: Component { GalleryView {} }
        onDismissed: Studio.gallery = false
    }
    Sheet {
        objectName: "savingSheet"
        title: "Save creation"
        shown: Studio.saving
        content: Component { SaveDialog {} }
        onDismissed: Studio.saving = false
    }
    Sheet {
        objectName: "guideSheet"
        title: "Coder\u2019s handbook"
        shown: Studio.guide
        content: Component { GuideView {} }
        onDismissed: Studio.guide = false
    }
    Sheet {
        objectName: "mapSheet"
        title: "Adventure map"
        shown: Studio.map
        content: Component { WorldMapView {} }
        onDismissed: Studio.map = false
    }
}
