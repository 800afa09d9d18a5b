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

    // Where the cursor stands as {line, column} while the child is in the editor, else empty.
    readonly property var cursorPlace: editor.activeFocus ? highlighter.lineColumn(editor.cursorPosition) : ({})

    // The area a place of the language covers in the editor, or an empty rectangle.
    function wordArea(place) {
        const start = place.line === undefined ? -1 : highlighter.position(place.line, place.column)
        if (start < 0 || editor.length < 0)
            return Qt.rect(0, 0, 0, 0)
        const first = editor.positionToRectangle(start)
        const last = editor.positionToRectangle(start + place.length)
        const width = last.y === first.y ? last.x - first.x : editor.width - first.x
        return Qt.rect(first.x, first.y, Math.max(width, 4), first.height)
    }

    function callPlace(place) {
        return place.callLine === undefined ? ({})
                                             : { line: place.callLine, column: place.callColumn, length: place.callLength }
    }

    // Scrolls the editor just enough to show an area.
    function reveal(area) {
        const view = editorScroll.contentItem
        if (area.height <= 0 || !view)
            return
        if (area.y < view.contentY)
            view.contentY = area.y
        else if (area.y + area.height > view.contentY + view.height)
            view.contentY = area.y + area.height - view.height
    }

    // A click on the drawing selects the command that drew the line.
    function selectPlace(place) {
        const start = highlighter.position(place.line, place.column)
        if (start < 0)
            return
        editor.forceActiveFocus()
        editor.select(start, start + place.length)
        pane.reveal(pane.wordArea(place))
    }

    CodeHighlighter {
        id: highlighter
        objectName: "codeHighlighter"
        document: editor.textDocument
        colors: Theme.codeColors
    }

    Connections {
        target: Studio
        // The cursor goes to the word an error is about.
        function onErrorPlaceChanged() {
            const place = Studio.errorPlace
            const start = place.line === undefined ? -1 : highlighter.position(place.line, place.column)
            if (start < 0)
                return
            editor.cursorPosition = start
            pane.reveal(pane.wordArea(place))
        }
    }

    // Code from elsewhere (another mission, a creation, a chip) reaches the editor here; what
    // the child types goes the other way, through onTextChanged.
    Connections {
        target: Studio
        function onCodeChanged() { pane.follow() }
    }

    property bool appending: false
    property bool following: false

    function follow() {
        if (editor.text === Studio.code) {
            pane.following = true
            return
        }
        if (pane.appending && Studio.code.startsWith(editor.text)) {
            // A chip's example is one undo step of its own.
            codeDocument.beginUndoStep()
            editor.insert(editor.length, Studio.code.slice(editor.text.length))
            editor.cursorPosition = editor.length
            codeDocument.beginUndoStep()
        } else {
            editor.text = Studio.code
            codeDocument.loaded()
        }
        pane.following = true
    }

    function leaveEditor(forward) {
        editor.nextItemInFocusChain(forward).forceActiveFocus(forward ? Qt.TabFocusReason : Qt.BacktabFocusReason)
    }

    Rectangle {
        Layout.fillWidth: true
        Layout.preferredHeight: 250
        radius: 12
        color: Theme.editorFill

        LineGutter {
            objectName: "lineGutter"
            anchors.left: parent.left
            anchors.top: editorScroll.top
            anchors.bottom: editorScroll.bottom
            width: 34
            clip: true
            document: editor.textDocument
            contentY: editorScroll.contentItem ? (editorScroll.contentItem as Flickable).contentY : 0
            color: Theme.gutterText
            font.family: Theme.codeFont
            font.pixelSize: 12
        }

        FocusRing { shown: editor.activeFocus; radius: 15 }

        ScrollView {
            id: editorScroll
            anchors.fill: parent
            anchors.margins: 10
            anchors.leftMargin: 38
            contentWidth: availableWidth
            ScrollBar.horizontal.policy: ScrollBar.AlwaysOff
            TextArea {
                id: editor
                objectName: "codeEditor"
                // Tab indents only while the child is typing here; otherwise it moves on.
                property bool typing: false
                enabled: !Studio.running
                font.family: Theme.codeFont
                font.pixelSize: 16
                font.weight: Font.Medium
                color: Theme.ink
                selectByMouse: true
                wrapMode: TextEdit.WrapAtWordBoundaryOrAnywhere
                background: null
                padding: 0
                Accessible.name: "LOGO code editor"
                Accessible.description: Studio.errorPlace.line === undefined ? "" : Studio.spokenMessage

                // Drawn under the text: the running word, its recipe call, the matching bracket.
                Rectangle {
                    objectName: "callMark"
                    readonly property rect area: pane.wordArea(pane.callPlace(Studio.runPlace))
                    visible: area.width > 0
                    x: area.x; y: area.y; width: area.width; height: area.height
                    radius: 3
                    z: -1
                    color: Theme.runningCall
                }
                Rectangle {
                    objectName: "runMark"
                    readonly property rect area: pane.wordArea(Studio.runPlace)
                    visible: area.width > 0
                    x: area.x; y: area.y; width: area.width; height: area.height
                    radius: 3
                    z: -1
                    color: Theme.runningWord
                    onAreaChanged: pane.reveal(area)
                }
                Repeater {
                    objectName: "bracketMarks"
                    model: {
                        const pair = editor.activeFocus && editor.length >= 0 ? highlighter.bracketPair(editor.cursorPosition) : ({})
                        return pair.at === undefined ? [] : [pair.at, pair.match]
                    }
                    Rectangle {
                        required property int modelData
                        readonly property rect area: editor.positionToRectangle(modelData)
                        objectName: "bracketMark"
                        x: area.x - 1; y: area.y; width: 12; height: area.height
                        radius: 3
                        z: -1
                        color: Theme.bracketMatch
                    }
                }
                Canvas {
                    id: wave
                    objectName: "errorMark"
                    readonly property rect area: pane.wordArea(Studio.errorPlace)
                    visible: area.width > 0
                    x: area.x; y: area.y + area.height - 3; width: area.width; height: 5
                    onWidthChanged: requestPaint()
                    onPaint: {
                        const context = getContext("2d")
                        context.reset()
                        context.strokeStyle = Theme.errorWave
                        context.lineWidth = 1.5
                        context.beginPath()
                        context.moveTo(0, 4)
                        for (let x = 2; x <= width + 2; x += 2)
                            context.lineTo(x, x % 4 === 0 ? 4 : 1)
                        context.stroke()
                    }
                }

                // Each continuation of a wrapped line carries a mark in its indent.
                Repeater {
                    model: codeDocument.continuations
                    SymbolIcon {
                        required property rect modelData
                        x: modelData.x
                        y: modelData.y
                        width: modelData.width
                        height: modelData.height
                        name: "arrow.turn.down.right"
                        size: 14
                        color: Theme.secondary
                    }
                }
                Component.onCompleted: pane.follow()
                // Until the code has arrived the editor's own start-up changes are not the child's.
                onTextChanged: if (pane.following && text !== Studio.code) Studio.code = text
                onActiveFocusChanged: typing = false
                Keys.onPressed: event => {
                    const control = (event.modifiers & Qt.ControlModifier) !== 0
                    if (event.key === Qt.Key_Escape || (event.key === Qt.Key_Tab && control)) {
                        pane.leaveEditor(true)
                    } else if (event.key === Qt.Key_Backtab) {
                        pane.leaveEditor(false)
                    } else if (event.key === Qt.Key_Tab) {
                        if (!editor.typing) {
                            pane.leaveEditor(true)
                        } else {
                            editor.remove(editor.selectionStart, editor.selectionEnd)
                            editor.insert(editor.cursorPosition, "  ")
                        }
                    } else {
                        if (event.text.length > 0 && !control)
                            editor.typing = true
                        // A new word starts a new undo step, as in other text editors.
                        const at = editor.cursorPosition
                        if (event.text.trim().length > 0 && (at === 0 || editor.getText(at - 1, at).trim().length === 0))
                            codeDocument.beginUndoStep()
                        return
                    }
                    event.accepted = true
                }
                EditorHistory { document: editor.textDocument }
            }
        }
        CodeDocument {
            id: codeDocument
            document: editor.textDocument
            // A wrapped line continues two characters in, under its own text.
            hangingIndent: 2 * codeMetrics.averageCharacterWidth
        }
        FontMetrics {
            id: codeMetrics
            font: editor.font
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
            Accessible.name: Studio.stepIndex + " / " + Studio.stepTotal + " steps"
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
        SymbolIcon {
            objectName: "slowEnd"
            name: "tortoise.fill"
            size: 18
            color: Theme.secondary
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
            FocusRing {
                shown: speed.visualFocus
                radius: 8
            }
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
        SymbolIcon {
            objectName: "fastEnd"
            name: "hare.fill"
            size: 18
            color: Theme.secondary
        }
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
                Accessible.name: "Show the target drawing"
                checked: Studio.showTarget
                onToggled: Studio.showTarget = checked
                Keys.onReturnPressed: { toggle(); toggled() }
                Keys.onEnterPressed: { toggle(); toggled() }
                font.pixelSize: 13
                FocusRing {
                    shown: target.visualFocus
                    radius: 8
                }
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
                onClicked: {
                    pane.appending = true
                    Studio.appendCode(modelData)
                    pane.appending = false
                }
            }
        }
    }
}
