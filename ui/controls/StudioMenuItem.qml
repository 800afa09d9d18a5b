import QtQuick
import QtQuick.Controls.Basic
import MarbleCove

// One entry of a studio menu or picker: ink text on a soft violet row when highlighted, a
// check mark when chosen, and dimmed like every disabled control when it cannot be chosen.
MenuItem {
    id: item

    font.pixelSize: 14
    padding: 8
    leftPadding: 12
    rightPadding: 16
    spacing: 8
    hoverEnabled: true
    opacity: enabled ? 1 : 0.45

    indicator: SymbolIcon {
        x: item.leftPadding
        anchors.verticalCenter: parent.verticalCenter
        name: "checkmark"
        size: 16
        color: Theme.violet
        visible: item.checked
    }

    contentItem: Text {
        leftPadding: item.checkable ? item.indicator.width + item.spacing : 0
        text: item.text
        font: item.font
        color: Theme.ink
        verticalAlignment: Text.AlignVCenter
    }

    background: Rectangle {
        implicitHeight: 34
        x: 4
        width: item.width - 8
        radius: 6
        color: item.down ? Theme.pressedFill : (item.highlighted ? Theme.highlightFill : "transparent")
    }
}
