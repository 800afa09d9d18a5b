pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import MarbleCove

// Four pages that greet a child: hello, their name, their turtle, and a little practice.
// Nothing reaches the studio before the last button.
Rectangle {
    id: welcome
    objectName: "welcomeView"
    implicitWidth: 740
    implicitHeight: 650
    color: Theme.window
    radius: 18

    property string player: Studio.playerName
    property int page: 0
    property int selected: Studio.turtle
    property string nickname: Studio.turtleName
    property int demoStep: 0
    readonly property var demoLines: Catalog.demoStrokes
    readonly property string cleanPlayer: Catalog.cleanName(player)
    readonly property string cleanNickname: Catalog.cleanName(nickname)
    readonly property bool forwardEnabled: (page < 1 || cleanPlayer.length > 0) && (page < 2 || cleanNickname.length > 0)

    Component.onCompleted: {
        player = player
        selected = selected
        nickname = nickname
    }

    function forward() {
        if (!forwardEnabled)
            return
        if (page < 3)
            page += 1
        else
            Studio.finishWelcome(selected, nickname, player)
    }

    ColumnLayout {
        anchors.fill: parent
        anchors.margins: 30
        spacing: 0

        RowLayout {
            spacing: 12
            Layout.fillWidth: true
            Layout.bottomMargin: 24
            Text {
                text: "WELCOME TO MARBLE COVE"
                font.pixelSize: 12
                font.weight: Font.Black
                font.letterSpacing: 1.5
                color: Theme.violet
            }
            Text {
                objectName: "welcomePageNumber"
                text: (welcome.page + 1) + " of 4"
                font.pixelSize: 13
                font.weight: Font.DemiBold
                color: Theme.secondary
            }
            Item { Layout.fillWidth: true }
            StudioButton {
                objectName: "closeTourButton"
                visible: !Studio.needsIntroduction
                kind: "plain"
                text: "Close tour"
                textSize: 13
                onClicked: Studio.welcome = false
            }
        }

        Flickable {
            id: scroller
            Layout.fillWidth: true
            Layout.fillHeight: true
            contentWidth: width
            contentHeight: pages.implicitHeight
            boundsBehavior: Flickable.StopAtBounds
            clip: true
            ScrollBar.vertical: ScrollBar {}

            StackLayout {
                id: pages
                width: scroller.width
                currentIndex: welcome.page

                // Page 0: hello
                ColumnLayout {
                    spacing: 14
                    Image {
                        // Drawn from the vector source at the screen's pixel ratio, so it stays sharp when scaled.
                        source: "qrc:/MarbleCove/resources/MarbleCoveLogo.svg"
                        sourceSize.width: 155
                        sourceSize.height: 155
                        visible: status === Image.Ready
                        Layout.preferredWidth: 155
                        Layout.preferredHeight: 155
                        Layout.alignment: Qt.AlignHCenter
                    }
                    WelcomeText { text: "Hello there! Welcome to Marble Cove."; size: 30; weight: Font.Black }
                    WelcomeText {
                        text: "This is a little place for big imaginations."
                        size: 20
                        weight: Font.DemiBold
                        color: Theme.violet
                    }
                    WelcomeText {
                        text: "There\u2019s a turtle here who loves to draw. It just needs someone with ideas to show it where to go."
                        size: 18
                        maximumWidth: 550
                    }
                    WelcomeText {
                        text: "That someone could be you. Together, you\u2019ll turn simple instructions into shapes, patterns, and pictures of your own. No coding experience needed\u2014just a little curiosity."
                        size: 16
                        color: Theme.secondary
                        maximumWidth: 570
                    }
                }

                // Page 1: the child's name
                ColumnLayout {
                    spacing: 14
                    SymbolIcon { name: "hand.wave.fill"; size: 50; color: Theme.violet; Layout.alignment: Qt.AlignHCenter }
                    WelcomeText { text: "And what should we call you?"; size: 30; weight: Font.Black }
                    WelcomeText {
                        text: "Every adventure starts with a hello. Tell us your first name or a nickname you like."
                        size: 18
                        color: Theme.secondary
                    }
                    ColumnLayout {
                        spacing: 8
                        Layout.fillWidth: true
                        Layout.topMargin: 8
                        Text { text: "Your name"; font.pixelSize: 16; font.weight: Font.DemiBold; color: Theme.ink }
                        StudioTextField {
                            id: playerField
                            objectName: "playerField"
                            text: welcome.player
                            placeholderText: "Type your name here"
                            Accessible.name: "Your name"
                            font.pixelSize: 24
                            font.weight: Font.Medium
                            focus: welcome.page === 1
                            Layout.fillWidth: true
                            onTextEdited: {
                                const limited = Catalog.limitName(text)
                                if (limited !== text)
                                    text = limited
                                welcome.player = text
                            }
                            onAccepted: if (welcome.cleanPlayer.length > 0) welcome.page = 2
                            fieldHeight: 50
                        }
                        Text {
                            text: "You can change this later by clicking your initial in the studio."
                            font.pixelSize: 13
                            color: Theme.secondary
                        }
                    }
                    WelcomeText {
                        objectName: "greeting"
                        visible: welcome.cleanPlayer.length > 0
                        text: "Hello, " + welcome.cleanPlayer + "! Your adventure is waiting."
                        size: 20
                        weight: Font.Bold
                    }
                }

                // Page 2: the turtle
                ColumnLayout {
                    spacing: 14
                    WelcomeText { text: "Nice to meet you, " + welcome.cleanPlayer + "!"; size: 30; weight: Font.Black }
                    WelcomeText {
                        text: "Now let\u2019s meet your drawing buddy. Pick a turtle, then give it a name."
                        size: 16
                        color: Theme.secondary
                    }
                    CompanionPicker {
                        Layout.fillWidth: true
                        selected: welcome.selected
                        nickname: welcome.nickname
                        onPicked: (index, name) => {
                            welcome.selected = index
                            welcome.nickname = name
                        }
                        onRenamed: name => welcome.nickname = name
                    }
                }

                // Page 3: the tour and a practice drawing
                ColumnLayout {
                    spacing: 14
                    WelcomeText {
                        text: welcome.cleanPlayer + " + " + welcome.cleanNickname + " = a team."
                        size: 27
                        weight: Font.Black
                    }
                    WelcomeText {
                        text: "Code goes on the left. Your drawing appears on the right. Try the button below to see how a turtle follows instructions."
                        size: 16
                        color: Theme.secondary
                    }
                    RowLayout {
                        spacing: 16
                        Layout.fillWidth: true
                        ColumnLayout {
                            spacing: 6
                            Layout.alignment: Qt.AlignTop
                            Repeater {
                                model: ["forward 80", "right 90", "forward 80"]
                                Rectangle {
                                    required property string modelData
                                    required property int index
                                    objectName: "demoCommand_" + index
                                    readonly property bool lit: welcome.demoStep === index + 1
                                    color: lit ? Theme.mint : "transparent"
                                    radius: 8
                                    implicitWidth: 150
                                    implicitHeight: command.implicitHeight + 10
                                    Text {
                                        id: command
                                        anchors.verticalCenter: parent.verticalCenter
                                        x: 10
                                        text: parent.modelData
                                        font.family: Theme.codeFont
                                        font.pixelSize: 16
                                        font.weight: Font.Medium
                                        color: Theme.ink
                                    }
                                }
                            }
                            StudioButton {
                                objectName: "tryStepButton"
                                kind: "prominent"
                                text: welcome.demoStep < 3 ? "Try one step" : "Try again"
                                onClicked: welcome.demoStep = welcome.demoStep < 3 ? welcome.demoStep + 1 : 0
                            }
                        }
                        DrawingSurface {
                            objectName: "practiceCanvas"
                            Layout.fillWidth: true
                            Layout.preferredHeight: 210
                            strokes: Catalog.demoStrokesUpTo(welcome.demoStep < 1 ? 0 : (welcome.demoStep < 3 ? 1 : 2))
                            bounds: welcome.demoLines
                            point: welcome.demoStep === 0 ? Qt.point(0, 0) : (welcome.demoStep < 3 ? Qt.point(0, -80) : Qt.point(80, -80))
                            hasPoint: true
                            heading: welcome.demoStep < 2 ? 0 : 90
                            turtle: Studio.picture(welcome.selected)
                            background: Catalog.themes[0].color
                            grid: true
                            Accessible.role: Accessible.Graphic
                            Accessible.name: "Practice drawing, " + welcome.demoStep + " of 3 commands tried"
                        }
                    }
                    Repeater {
                        model: [
                            ["play.fill", "Run code plays your instructions. Step takes them one at a time."],
                            ["lightbulb.fill", "Stuck? Ask for a hint or switch on Target to see the goal."],
                            ["heart.square.fill", "Try Free play anytime. Save creation keeps your picture and code together."]
                        ]
                        RowLayout {
                            required property var modelData
                            spacing: 8
                            SymbolIcon { name: parent.modelData[0]; size: 16; color: Theme.violet }
                            Text { text: parent.modelData[1]; font.pixelSize: 14; color: Theme.ink }
                        }
                    }
                    Text {
                        text: "This little practice doesn\u2019t change your missions or drawings."
                        font.pixelSize: 12
                        color: Theme.secondary
                    }
                }
            }
        }

        Rectangle { Layout.fillWidth: true; implicitHeight: 1; color: Theme.divider }

        RowLayout {
            Layout.fillWidth: true
            Layout.topMargin: 18
            Layout.bottomMargin: 0
            StudioButton {
                objectName: "welcomeBackButton"
                visible: welcome.page >= 1
                text: "Back"
                onClicked: welcome.page -= 1
            }
            Item { Layout.fillWidth: true }
            Row {
                spacing: 6
                Accessible.role: Accessible.StaticText
                Accessible.name: "Step " + (welcome.page + 1) + " of 4"
                Repeater {
                    model: 4
                    Rectangle {
                        required property int index
                        width: index === welcome.page ? 24 : 8
                        height: 8
                        radius: 4
                        color: index === welcome.page ? Theme.violet : Qt.rgba(0.42, 0.28, 0.88, 0.15)
                    }
                }
            }
            Item { Layout.fillWidth: true }
            StudioButton {
                objectName: "welcomeForwardButton"
                kind: "prominent"
                text: ["Let\u2019s get acquainted", "Meet my turtle", "Show me around",
                       Studio.needsIntroduction ? "Let\u2019s explore!" : "Back to my studio"][welcome.page]
                enabled: welcome.forwardEnabled
                onClicked: welcome.forward()
            }
        }
    }
}
