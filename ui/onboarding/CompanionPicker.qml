pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import MarbleCove

// Four companion cards and a name field. The choice and the name belong to the host, which
// hears about every change and hands the values back.
ColumnLayout {
    id: picker
    spacing: 20

    property int selected: 0
    property string nickname
    signal picked(int index, string name)
    signal renamed(string name)

    RowLayout {
        spacing: 12
        Layout.fillWidth: true
        Repeater {
            model: Studio.names
            Button {
                id: card
                required property string modelData
                required property int index
                readonly property bool chosen: picker.selected === index
                readonly property bool unlocked: Studio.badges >= 0 && Studio.isTurtleUnlocked(index)
                readonly property color fill: chosen ? Theme.mint : Theme.card
                objectName: "pickerCard_" + index
                Layout.fillWidth: true
                enabled: unlocked
                opacity: unlocked ? 1 : 0.5
                // Dims the card as one flat picture; dimming each layer would let the picture's
                // backdrop show as a pale square on the card.
                layer.enabled: !unlocked
                topPadding: 14
                bottomPadding: 14
                Accessible.name: modelData + ", " + (chosen ? "selected" : (unlocked ? "available" : "unlocks at 3 badges"))
                onClicked: picker.picked(index, Studio.shownNames[index])
                Keys.onReturnPressed: clicked()
                Keys.onEnterPressed: clicked()

                background: Rectangle {
                    radius: 18
                    color: card.fill
                    border.width: card.chosen ? 2 : 0
                    border.color: Theme.violet
                    FocusRing {
                        shown: card.visualFocus
                        radius: 18 + gap
                    }
                }
                contentItem: ColumnLayout {
                    spacing: 10
                    PictureView {
                        image: Studio.picture(card.index)
                        backdrop: card.fill
                        visible: hasImage
                        Layout.preferredWidth: 112
                        Layout.preferredHeight: 112
                        Layout.alignment: Qt.AlignHCenter
                        Accessible.ignored: true
                    }
                    Text {
                        text: card.modelData
                        font.family: Theme.roundedFont
                        font.pixelSize: 14
                        font.bold: true
                        color: Theme.ink
                        Layout.alignment: Qt.AlignHCenter
                    }
                    Row {
                        spacing: 4
                        Layout.alignment: Qt.AlignHCenter
                        SymbolIcon {
                            name: !card.unlocked ? "lock.fill" : (card.chosen ? "checkmark.circle.fill" : "circle")
                            size: 14
                            color: card.chosen ? Theme.violet : Theme.ink
                            anchors.verticalCenter: parent.verticalCenter
                        }
                        Text {
                            objectName: "pickerStatus_" + card.index
                            text: !card.unlocked ? "3 badges" : (card.chosen ? "Your sidekick" : "Choose me")
                            font.pixelSize: 12
                            font.weight: Font.Medium
                            color: Theme.ink
                            anchors.verticalCenter: parent.verticalCenter
                        }
                    }
                }
            }
        }
    }

    ColumnLayout {
        spacing: 8
        Layout.fillWidth: true
        Text {
            text: "What should we call your turtle?"
            font.family: Theme.roundedFont
            font.pixelSize: 18
            font.bold: true
            color: Theme.ink
        }
        StudioTextField {
            id: name
            objectName: "nicknameField"
            text: picker.nickname
            placeholderText: "Your turtle\u2019s name"
            font.pixelSize: 20
            font.weight: Font.Medium
            Layout.fillWidth: true
            Accessible.name: "Your turtle\u2019s name"
            onTextEdited: {
                const limited = Catalog.limitName(text)
                if (limited !== text)
                    text = limited
                picker.renamed(text)
            }
            fieldHeight: 44
        }
        RowLayout {
            Layout.fillWidth: true
            Text {
                text: "Keep this name or dream up your own. You can change it later."
                font.pixelSize: 12
                color: Theme.secondary
            }
            Item { Layout.fillWidth: true }
            Text {
                objectName: "nicknameCounter"
                text: Catalog.characterCount(picker.nickname) + "/24"
                font.pixelSize: 12
                color: Theme.secondary
            }
        }
    }
}
