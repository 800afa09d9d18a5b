import QtQuick
import QtQuick.Layouts
import MarbleCove

// Explains the marks painted over the drawing: what differs, and which line style means what.
Rectangle {
    id: legend

    property string sentence
    property bool showsMissing
    property bool showsExtra

    implicitHeight: column.implicitHeight + 20
    radius: 10
    color: Theme.card
    opacity: 0.96
    border.color: Theme.border

    // A short sample of a line style: dashes of one colour, or stripes over a colour.
    component Sample: Row {
        id: sample
        property color tint
        property bool dashed
        spacing: dashed ? 3 : 0
        Layout.alignment: Qt.AlignVCenter
        Repeater {
            model: sample.dashed ? 4 : 8
            Rectangle {
                required property int index
                width: sample.dashed ? 6 : 4
                height: sample.dashed ? 4 : 6
                anchors.verticalCenter: parent.verticalCenter
                color: sample.dashed || index % 2 === 0 ? sample.tint : Qt.lighter(sample.tint, 1.8)
            }
        }
    }

    ColumnLayout {
        id: column
        anchors.fill: parent
        anchors.margins: 10
        spacing: 6
        Text {
            objectName: "differenceSentence"
            text: legend.sentence
            font.pixelSize: 14
            font.bold: true
            color: Theme.ink
            wrapMode: Text.WordWrap
            Layout.fillWidth: true
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
        RowLayout {
            spacing: 16
            visible: legend.showsMissing || legend.showsExtra
            RowLayout {
                visible: legend.showsMissing
                spacing: 6
                Sample { tint: Theme.missingLine; dashed: true }
                Text { text: "Missing line"; font.pixelSize: 12; color: Theme.ink }
            }
            RowLayout {
                visible: legend.showsExtra
                spacing: 6
                Sample { tint: Theme.extraLine; dashed: false }
                Text { text: "Line to change"; font.pixelSize: 12; color: Theme.ink }
            }
        }
    }
}
