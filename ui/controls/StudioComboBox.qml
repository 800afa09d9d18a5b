pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls.Basic
import MarbleCove

// A picker in the studio's colours; its list is at least as wide as its longest entry.
ComboBox {
    id: picker

    font.pixelSize: 13
    hoverEnabled: true
    // Return opens the list as Space does. It waits for the key to be let go, because letting
    // Return go in the open list chooses the entry and closes it.
    Keys.onReleased: event => {
        event.accepted = (event.key === Qt.Key_Return || event.key === Qt.Key_Enter) && !popup.visible
        if (event.accepted)
            popup.open()
    }

    delegate: StudioMenuItem {
        required property int index
        required property string modelData
        width: ListView.view.width
        text: modelData
        font.pixelSize: picker.font.pixelSize
        checkable: true
        checked: picker.currentIndex === index
        highlighted: picker.highlightedIndex === index
    }

    contentItem: Text {
        leftPadding: 12
        text: picker.displayText
        font: picker.font
        color: Theme.ink
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
    }

    indicator: SymbolIcon {
        x: picker.width - width - 10
        anchors.verticalCenter: parent.verticalCenter
        name: "chevron.down"
        size: 18
        color: Theme.secondary
    }

    background: Rectangle {
        implicitWidth: 140
        implicitHeight: 36
        radius: 8
        color: picker.down ? Theme.pressedFill : Theme.card
        border.color: Theme.border
        FocusRing {
            shown: picker.visualFocus
            radius: 8 + gap
        }
    }

    popup: Popup {
        y: picker.height + 4
        // The rows decide the width: the longest entry plus the row padding.
        readonly property real widest: {
            const rows = (contentItem as ListView).contentItem.children
            let widest = 0
            for (let i = 0; i < rows.length; ++i)
                widest = Math.max(widest, rows[i].implicitWidth)
            return widest
        }
        width: Math.max(picker.width, widest + leftPadding + rightPadding)
        implicitHeight: Math.min((contentItem as ListView).contentHeight + topPadding + bottomPadding,
                                 picker.Window.height - 12)
        padding: 4
        contentItem: ListView {
            clip: true
            implicitHeight: contentHeight
            model: picker.delegateModel
            currentIndex: picker.highlightedIndex
            highlightMoveDuration: 0
        }
        background: Rectangle {
            radius: 10
            color: Theme.card
            border.color: Theme.border
        }
    }
}
