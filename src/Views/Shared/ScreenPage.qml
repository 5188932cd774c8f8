import QtQuick
import Navorin

// A screen that lies upon another: the way back, its title, what it offers to do, and below them its content.
FocusScope {
    id: page

    // The least that is left at the sides.
    required property real edge
    // What is: in a wide window the content stays a column, so that an eye finds the other end of a row.
    readonly property real margin: Math.max(edge, Math.round((width - Theme.columnWidth) / 2))
    property string title
    // Buttons at the far end of the bar.
    property alias tools: tools.data
    default property alias content: body.data

    signal backRequested

    Accessible.role: Accessible.Pane
    Accessible.name: title

    Item {
        id: bar
        x: page.margin
        y: 12
        width: parent.width - 2 * x
        height: Theme.grown(48, 34)

        RoundButton {
            id: back
            anchors.left: parent.left
            anchors.verticalCenter: parent.verticalCenter
            symbol: "chevron.right"
            text: "بازگشت"
            onClicked: page.backRequested()
        }
        NText {
            anchors.left: back.right
            anchors.leftMargin: 12
            anchors.right: tools.left
            anchors.rightMargin: 12
            anchors.verticalCenter: parent.verticalCenter
            text: page.title
            role: Theme.screenTitle
            isOutside: true
            Accessible.role: Accessible.Heading
            Accessible.name: text
        }
        Row {
            id: tools
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            spacing: 8
        }
    }
    FocusScope {
        id: body
        anchors.top: bar.bottom
        anchors.topMargin: 12
        width: parent.width
        anchors.bottom: parent.bottom
        focus: true
    }
}
