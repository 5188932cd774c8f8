import QtQuick
import Navorin

// Says in two words what the player or the catalogue is doing.
Rectangle {
    id: badge

    required property string label
    required property bool isPlaying

    implicitWidth: row.width + 24
    implicitHeight: Theme.grown(30, 20)
    radius: height / 2
    color: Theme.secondaryFill
    Accessible.role: Accessible.StaticText
    Accessible.name: label

    Row {
        id: row
        anchors.centerIn: parent
        spacing: 8

        Rectangle {
            anchors.verticalCenter: parent.verticalCenter
            width: 6
            height: 6
            radius: 3
            color: badge.isPlaying ? Theme.success : Theme.warning

            Behavior on color { ColorAnimation { duration: 200 } }
        }
        NText {
            anchors.verticalCenter: parent.verticalCenter
            text: badge.label
            role: Theme.smallCaption
            font.weight: Font.DemiBold
            color: Theme.white(0.75)
        }
    }
}
