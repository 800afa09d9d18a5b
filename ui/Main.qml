import QtQuick
import QtQuick.Controls.Basic
import MarbleCove

ApplicationWindow {
    title: "Marble Cove"
    width: 1380
    height: 920
    minimumWidth: 1100
    minimumHeight: 780
    visible: true
    color: Theme.window
    palette.window: Theme.window
    palette.windowText: Theme.ink
    palette.base: Theme.card
    palette.text: Theme.ink
    palette.button: Theme.card
    palette.buttonText: Theme.ink
    palette.highlight: Theme.violet
    palette.highlightedText: "white"

    ContentView { anchors.fill: parent }

    // Every edit is already saved, so quitting needs no question.
    Shortcut {
        sequence: "Ctrl+Q"
        context: Qt.ApplicationShortcut
        onActivated: Qt.quit()
    }
}
