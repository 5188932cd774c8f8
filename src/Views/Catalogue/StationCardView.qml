import QtQuick
import Navorin

// One station of the grid. It never plays by itself: whoever shows it says what a tap does.
ScaleButtonStyle {
    id: card

    required property string name
    required property string artworkAddress
    required property string trackLine
    required property bool isSelected
    property bool isPlaying: false

    text: name
    radius: Theme.artRadius
    ringed: cover
    focusPolicy: Qt.ClickFocus
    Accessible.selectable: true
    Accessible.selected: isSelected
    Accessible.description: trackLine === "" ? "زنده" : trackLine

    Item {
        anchors.fill: parent

        Shadow {
            anchors.fill: cover
            radius: Theme.artRadius
            opacity: 0.35
        }
        Item {
            id: cover
            width: parent.width
            height: width

            ArtworkImage {
                anchors.fill: parent
                address: card.artworkAddress
                cornerRadius: Theme.artRadius
            }
            Rectangle {
                anchors.fill: parent
                radius: Theme.artRadius
                color: Theme.black(0.45)
                visible: card.isSelected
            }
            Rectangle {
                anchors.fill: parent
                radius: Theme.artRadius
                color: card.down ? Theme.black(0.14) : Theme.white(0.06 * card.glow)
                border.width: 1
                border.color: card.isSelected ? "transparent" : Theme.hairline
            }
            Loader {
                anchors.centerIn: parent
                active: card.isSelected && card.isPlaying
                sourceComponent: EqualizerBars {}
            }
            Icon {
                anchors.centerIn: parent
                symbol: "pause.fill"
                size: 26
                visible: card.isSelected && !card.isPlaying
            }
            // A gap keeps the ring readable on any cover.
            Rectangle {
                anchors.fill: parent
                anchors.margins: -4
                radius: Theme.artRadius + 4
                color: "transparent"
                border.width: 2
                border.color: Theme.accent
                visible: card.isSelected
            }
        }
        NText {
            id: title
            anchors.top: cover.bottom
            anchors.topMargin: 10
            width: parent.width
            text: card.name
            isOutside: true
        }
        Row {
            anchors.top: title.bottom
            anchors.left: parent.left
            width: parent.width
            spacing: 6

            Rectangle {
                anchors.verticalCenter: parent.verticalCenter
                width: 5
                height: 5
                radius: 2.5
                color: Theme.live
                visible: card.trackLine === ""
            }
            NText {
                width: parent.width - 11
                text: card.trackLine === "" ? "زنده" : card.trackLine
                role: Theme.smallCaption
                color: Theme.white(0.6)
            }
        }
    }
}
