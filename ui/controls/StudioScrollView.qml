import QtQuick
import QtQuick.Controls.Basic
import MarbleCove

// A vertically scrolling column that shows when it goes on: while more is hidden below, its
// scroll bar stays in sight and the bottom edge fades into the background colour.
Item {
    id: frame

    default property alias content: view.contentData
    readonly property alias availableWidth: view.availableWidth
    // The colour behind the column, which the fade melts into.
    property color fade: Theme.window
    readonly property bool continues: view.ScrollBar.vertical.position + view.ScrollBar.vertical.size < 0.999

    ScrollView {
        id: view
        anchors.fill: parent
        clip: true
        contentWidth: availableWidth
        ScrollBar.horizontal.policy: ScrollBar.AlwaysOff
        ScrollBar.vertical.policy: frame.continues || view.ScrollBar.vertical.position > 0.001 ? ScrollBar.AlwaysOn
                                                                                               : ScrollBar.AsNeeded
    }

    Rectangle {
        objectName: "scrollFade"
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.bottom: parent.bottom
        anchors.rightMargin: view.ScrollBar.vertical.width
        height: 28
        visible: frame.continues
        gradient: Gradient {
            GradientStop { position: 0; color: Qt.rgba(frame.fade.r, frame.fade.g, frame.fade.b, 0) }
            GradientStop { position: 1; color: frame.fade }
        }
    }
}
