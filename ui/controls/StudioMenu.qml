import QtQuick
import QtQuick.Controls.Basic
import MarbleCove

// A pop-up menu in the studio's colours, as wide as its longest entry so none is cut short.
Menu {
    id: menu

    topPadding: 4
    bottomPadding: 4
    width: {
        let widest = 0
        for (let i = 0; i < count; ++i) {
            const entry = itemAt(i)
            if (entry)
                widest = Math.max(widest, entry.implicitWidth)
        }
        return Math.max(160, widest + leftPadding + rightPadding)
    }

    background: Rectangle {
        radius: 10
        color: Theme.card
        border.color: Theme.border
    }
}
