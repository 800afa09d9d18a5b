pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import MarbleCove

// Where the child types the program and runs it, all at once or a step at a time.
ColumnLayout {
    id: pane
    spacing: 12

    readonly property var current: Catalog.missions[Studio.mission]

    RowLayout {
        Layout.fillWidth: true
        SymbolIcon { name: "chevron.left.forwardslash.chevron.right"; size: 18 }
        Text {
            text: "Your code"
            font.pixelSize: 16
            font.bold: true
            color: Theme.ink
        }
        Item { Layout.fillWidth: true }
        StudioButton {
            objectName: "handbookButton"
            kind: "plain"
            symbol: "questionmark.circle"
            tooltip: "Open command handbook"
            onClicked: Studio.guide = true
        }
    }

    Text {
        text: "One instruction at a time. Big ideas welcome."
        font.pixelSize: 13
        color: Theme.secondary
    }

    Rectangle {
        Layout.fillWidth: true
        Layout.preferredHeight: 250
        radius: 12
        color: Theme.editorFill

        ScrollView {
            anchors.fill: parent
            anchors.margins: 10
            TextArea {
                id: editor
                objectName: "codeEditor"
                text: Studio.code
                enabled: !Studio.running
                font.family: Theme.codeFont
                font.pixelSize: 16
                font.weight: Font.Medium
                color: Theme.ink
                selectByMouse: true
                wrapMode: TextEdit.NoWrap
                background: null
                padding: 0
                Accessible.name: "LOGO code editor"
                onTextChanged: if (text !== Studio.code) Studio.code = text
            }
        }
    }

    RowLayout {
        spacing: 8
        StudioButton {
            objectName: "runButton"
            kind: "prominent"
            text: Studio.running ? "Stop" : "Run code"
            symbol: Studio.running ? "stop.fill" : "play.fill"
            onClicked: Studio.running ? Studio.stop() : Studio.run()
        }
        StudioButton {
            objectName: "stepButton"
            text: "Step"
            symbol: "forward.end.fill"
            tooltip: "Execute one instruction"
            enabled: !Studio.running
            onClicked: Studio.step()
        }
        StudioButton {
            objectName: "clearButton"
            symbol: "arrow.counterclockwise"
            tooltip: "Clear drawing"
            onClicked: {
                Studio.stop()
                Studio.reset()
                Studio.message = "Fresh canvas. Your code is still here."
            }
        }
    }

    // The window's shortcut, not the application's: a modal sheet on top then blocks it.
    Shortcut {
        sequences: ["Ctrl+Return", "Ctrl+Enter"]
        context: Qt.WindowShortcut
        onActivated: Studio.running ? Studio.stop() : Studio.run()
    }

    ColumnLayout {
        objectName: "stepProgress"
        visible: Studio.stepTotal > 0
        spacing: 4
        Layout.fillWidth: true
        ProgressBar {
            id: progress
            from: 0
            to: Math.max(1, Studio.stepTotal)
            value: Studio.stepIndex
            Layout.fillWidth: true
            background: Rectangle { implicitHeight: 6; radius: 3; color: Theme.divider }
            contentItem: Item {
                implicitHeight: 6
                Rectangle {
                    width: progress.visualPosition * parent.width
                    height: parent.height
                    radius: 3
                    color: Theme.violet
                }
            }
        }
        Text {
            objectName: "stepLine"
            text: Studio.stepIndex + " / " + Studio.stepTotal + " steps  \u00b7  " + Studio.currentCommand
            font.family: Theme.codeFont
            font.pixelSize: 12
            color: Theme.secondary
            elide: Text.ElideRight
            Layout.fillWidth: true
        }
    }

    RowLayout {
        spacing: 8
        Layout.fillWidth: true
        Text {
            text: "Speed"
            font.pixelSize: 13
            color: Theme.ink
        }
        Slider {
            id: speed
            objectName: "speedSlider"
            from: 0.01
            to: 0.35
            value: 0.36 - Studio.speed
            Layout.fillWidth: true
            Accessible.name: "Drawing speed"
            onMoved: Studio.speed = 0.36 - value
            background: Rectangle {
                x: speed.leftPadding
                y: speed.topPadding + speed.availableHeight / 2 - height / 2
                width: speed.availableWidth
                height: 4
                radius: 2
                color: Theme.divider
                Rectangle {
                    width: speed.visualPosition * parent.width
                    height: parent.height
                    radius: 2
                    color: Theme.violet
                }
            }
            handle: Rectangle {
                x: speed.leftPadding + speed.visualPosition * (speed.availableWidth - width)
                y: speed.topPadding + speed.availableHeight / 2 - height / 2
                width: 18
                height: 18
                radius: 9
                color: "white"
                border.color: Theme.border
            }
        }
        SymbolIcon { name: "hare.fill"; size: 16; color: Theme.secondary }
    }

    ColumnLayout {
        visible: !Studio.free
        spacing: 10
        Layout.fillWidth: true
        RowLayout {
            spacing: 10
            Switch {
                id: target
                objectName: "targetSwitch"
                text: "Target"
                checked: Studio.showTarget
                onToggled: Studio.showTarget = checked
                font.pixelSize: 13
                indicator: Rectangle {
                    implicitWidth: 38
                    implicitHeight: 22
                    x: target.leftPadding
                    y: (target.height - height) / 2
                    radius: 11
                    color: target.checked ? Theme.violet : Theme.divider
                    Rectangle {
                        x: target.checked ? parent.width - width - 2 : 2
                        y: 2
                        width: 18
                        height: 18
                        radius: 9
                        color: "white"
                        Behavior on x { NumberAnimation { duration: 120 } }
                    }
                }
            }
            Item { Layout.fillWidth: true }
            StudioButton {
                objectName: "hintButton"
                text: Studio.hint === 0 ? "A little hint" : "Next hint"
                symbol: "lightbulb"
                enabled: Studio.hint < pane.current.hints.length
                onClicked: Studio.requestHint()
            }
        }
        Rectangle {
            visible: Studio.hint >= 1
            color: Qt.rgba(1, 0.8, 0, 0.2)
            radius: 8
            Layout.fillWidth: true
            implicitHeight: hintText.implicitHeight + 24
            TextEdit {
                id: hintText
                objectName: "hintText"
                anchors.fill: parent
                anchors.margins: 12
                text: Studio.hint >= 1 ? pane.current.hints[Studio.hint - 1] : ""
                readOnly: true
                selectByMouse: true
                wrapMode: TextEdit.Wrap
                font.pixelSize: 14
                color: Theme.ink
            }
        }
    }

    Flow {
        spacing: 6
        Layout.fillWidth: true
        Repeater {
            model: ["forward 50", "right 90", "color pink"]
            StudioButton {
                required property string modelData
                required property int index
                objectName: "chip_" + index
                text: modelData
                font.family: Theme.codeFont
                textSize: 11
                padding: 4
                leftPadding: 8
                rightPadding: 8
                enabled: !Studio.running
                onClicked: Studio.appendCode(modelData)
            }
        }
    }
}
