import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Templates as T
import MarbleCove

// A modal sheet bound to one of the studio's flags. Its content is made afresh at every
// opening, so what a child typed last time never lingers. `dismissed` fires once the sheet
// has finished closing, however it was closed.
Dialog {
    id: sheet

    property bool shown: false
    property bool dismissable: true
    property Component content
    signal dismissed()

    parent: T.Overlay.overlay
    // The title is what a screen reader calls the sheet; each sheet shows its own heading.
    header: null
    anchors.centerIn: parent
    modal: true
    // Escape reaches a popup only while it holds the keyboard focus.
    focus: true
    padding: 0
    closePolicy: dismissable ? (Popup.CloseOnEscape | Popup.CloseOnPressOutside) : Popup.NoAutoClose
    onShownChanged: shown ? open() : close()
    Component.onCompleted: if (shown) open()
    onClosed: dismissed()

    background: Rectangle {
        color: Theme.card
        radius: 18
        border.color: Theme.border
    }

    T.Overlay.modal: Rectangle {
        color: Theme.scrim
    }

    contentItem: Loader {
        // The loader is a focus scope: without focus here no field inside could take the typing.
        focus: true
        active: sheet.shown || sheet.visible
        sourceComponent: sheet.content
    }
}
