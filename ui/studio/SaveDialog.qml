import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import MarbleCove

// Names a finished drawing before it joins the gallery.
Item {
    implicitWidth: 460
    // The prefilled title is selected, so typing a new name replaces it.
    Component.onCompleted: title.selectAll()
    implicitHeight: column.implicitHeight + 60

    ColumnLayout {
        id: column
        anchors.fill: parent
        anchors.margins: 30
        spacing: 20

        SheetTitle { text: "Give your creation a name" }
        Text {
            text: "Your picture and code stay together, ready to remix."
            font.pixelSize: 14
            color: Theme.secondary
            wrapMode: Text.WordWrap
            Layout.fillWidth: true
        }
        StudioTextField {
            id: title
            objectName: "titleField"
            placeholderText: "My masterpiece"
            Accessible.name: "Name your creation"
            text: Studio.creationTitle
            font.pixelSize: 15
            focus: true
            Layout.fillWidth: true
            onTextEdited: Studio.creationTitle = text
            onAccepted: Studio.saveCreation()
            fieldHeight: 34
            radius: 8
        }
        RowLayout {
            Layout.fillWidth: true
            StudioButton {
                objectName: "cancelSaveButton"
                text: "Cancel"
                onClicked: Studio.saving = false
            }
            Item { Layout.fillWidth: true }
            // While the drawing is on its way to the disk, it turns and a second save waits.
            BusyIndicator {
                objectName: "storingIndicator"
                Accessible.name: "Saving…"
                running: Studio.storingCreation
                visible: running
                implicitWidth: 28
                implicitHeight: 28
            }
            StudioButton {
                objectName: "saveToGalleryButton"
                kind: "prominent"
                text: "Save to my gallery"
                enabled: Studio.creationTitle.trim().length > 0 && !Studio.storingCreation
                onClicked: Studio.saveCreation()
            }
        }
    }
}
