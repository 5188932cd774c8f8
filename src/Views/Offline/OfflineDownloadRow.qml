import QtQuick
import Navorin

// One track on its way, with how far it is and a way to give it up.
Rectangle {
    id: row

    required property string title
    required property real progress

    signal cancelRequested

    implicitHeight: Theme.grown(72, 42)
    radius: Theme.artRadius
    color: Theme.rowFill
    Accessible.role: Accessible.ProgressBar
    Accessible.name: title
    Accessible.description: state.text

    NText {
        id: name
        anchors.left: parent.left
        anchors.leftMargin: 16
        anchors.right: cancel.left
        anchors.rightMargin: 12
        y: 8
        text: row.title
        isOutside: true
    }
    NText {
        id: state
        anchors.left: parent.left
        anchors.leftMargin: 16
        y: name.y + name.height
        text: "در حال دانلود…"
        role: Theme.smallCaption
        color: Theme.white(0.55)
    }
    Rectangle {
        id: track
        anchors.left: parent.left
        anchors.leftMargin: 16
        anchors.right: cancel.left
        anchors.rightMargin: 12
        y: state.y + state.height + 6
        height: 4
        radius: 2
        color: Theme.trackFill

        Rectangle {
            anchors.left: parent.left
            width: Math.max(height, parent.width * row.progress)
            height: parent.height
            radius: parent.radius
            color: Theme.accent

            Behavior on width { NumberAnimation { duration: Theme.motionTime(200) } }
        }
    }
    RoundButton {
        id: cancel
        anchors.right: parent.right
        anchors.rightMargin: 12
        anchors.verticalCenter: parent.verticalCenter
        size: 36
        symbol: "xmark.circle.fill"
        text: "انصراف"
        onClicked: row.cancelRequested()
    }
}
