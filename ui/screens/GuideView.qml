pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import MarbleCove

// The coder's handbook: every command as a ready-made example; a click adds it to the code.
Item {
    id: guide
    implicitWidth: 670
    implicitHeight: 710

    // Example code and explanation, inserted exactly as written.
    readonly property var entries: [
        ["forward 100", "Move 100 steps in the direction your turtle faces. FD works too."],
        ["back 50", "Move backward 50 steps without turning. Short name: BK."],
        ["right 90", "Turn clockwise, staying in the same place. 90 degrees is a square corner. RT works too."],
        ["left 90", "Turn the other way. Short name: LT."],
        ["repeat 4 [forward 80 right 90]", "Do everything inside the brackets four times. This draws a square."],
        ["color pink", "Choose pink, purple, blue, green, orange, yellow, red, white, or black."],
        ["width 8", "Make your next lines thicker. Choose a width from 1 to 20."],
        ["penup", "Lift your pen. Movement leaves no line. Short name: PU."],
        ["pendown", "Put your pen down to draw again. Short name: PD."],
        ["home", "Return to the start and face up. Lift the pen first if you don't want a line home."],
        ["setheading 90", "Face a direction: 0 is up, 90 right, 180 down, 270 left. Short name: SETH."],
        ["clear", "Clear the drawing and return home. Your code stays in the editor. Short name: CS."],
        ["to square\n  repeat 4 [forward 80 right 90]\nend\nsquare",
         "Teach your turtle a named recipe. TO begins it, END finishes it, and the name runs it. Put recipes outside loops. Recipes can call other recipes, but cannot call themselves."],
        ["; This is a note to myself", "A semicolon starts a comment. Your turtle ignores the rest of that line."]
    ]

    function append(example) {
        Studio.appendCode(example)
        Studio.guide = false
    }

    ColumnLayout {
        anchors.fill: parent
        anchors.margins: 28
        spacing: 18

        SheetHeader {
            name: "guide"
            title: "Coder\u2019s handbook"
            Layout.fillWidth: true
            onDone: Studio.guide = false
        }
        Text {
            text: "Click a command to add it to your code. Every run starts with a fresh canvas."
            font.pixelSize: 14
            color: Theme.secondary
        }

        ScrollView {
            id: scroller
            objectName: "guideScroller"
            Layout.fillWidth: true
            Layout.fillHeight: true
            contentWidth: availableWidth
            clip: true

            Column {
                width: scroller.availableWidth
                spacing: 12

                Repeater {
                    model: guide.entries

                    StudioButton {
                        id: entry
                        required property var modelData
                        required property int index
                        objectName: "guideEntry_" + index
                        kind: "plain"
                        width: parent.width
                        padding: 16
                        leftPadding: 16
                        rightPadding: 16
                        enabled: !Studio.running
                        Accessible.name: modelData[0]
                        onClicked: guide.append(modelData[0])

                        contentItem: Column {
                            spacing: 8
                            Text {
                                objectName: "guideExample_" + entry.index
                                text: entry.modelData[0]
                                textFormat: Text.PlainText
                                font.family: Theme.codeFont
                                font.pixelSize: 15
                                font.weight: Font.DemiBold
                                color: Theme.violet
                                width: parent.width
                            }
                            Text {
                                objectName: "guideExplanation_" + entry.index
                                text: entry.modelData[1]
                                font.pixelSize: 14
                                color: Theme.ink
                                width: parent.width
                                wrapMode: Text.WordWrap
                            }
                        }
                        background: Rectangle {
                            radius: 14
                            color: Qt.rgba(Theme.violet.r, Theme.violet.g, Theme.violet.b, 0.05)
                        }
                    }
                }
            }
        }
    }
}
