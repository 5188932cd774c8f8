import QtQuick
import Navorin

// Something found that plays at a tap.
ScaleButtonStyle {
    id: row

    required property string title
    required property string line
    property bool isLineOutside: true
    required property string artworkAddress
    required property bool isSelected
    property bool isPlaying: false
    property string actionSymbol: "play.circle"

    text: title
    implicitHeight: Theme.resultHeight
    radius: Theme.artRadius
    focusPolicy: Qt.ClickFocus
    Accessible.description: line
    Accessible.selectable: true
    Accessible.selected: isSelected

    background: Rectangle {
        radius: row.radius
        color: row.isSelected ? Theme.white(0.10) : row.down ? Theme.white(0.03) : Theme.white(0.04 + 0.06 * row.glow)
    }
    Item {
        anchors.fill: parent
        anchors.leftMargin: 10
        anchors.rightMargin: 14

        ArtworkImage {
            id: art
            anchors.left: parent.left
            anchors.verticalCenter: parent.verticalCenter
            width: 44
            height: 44
            cornerRadius: Theme.rowRadius
            symbolSize: 20
            address: row.artworkAddress
        }
        Column {
            anchors.left: art.right
            anchors.leftMargin: 12
            anchors.right: action.left
            anchors.rightMargin: 12
            anchors.verticalCenter: parent.verticalCenter

            NText {
                width: parent.width
                text: row.title
                isOutside: true
            }
            NText {
                width: parent.width
                text: row.line
                role: Theme.smallCaption
                color: Theme.white(0.6)
                isOutside: row.isLineOutside
                visible: text !== ""
            }
        }
        Item {
            id: action
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            width: 28
            height: 28

            Icon {
                anchors.centerIn: parent
                symbol: row.actionSymbol
                size: 26
                opacity: 0.75 + 0.25 * row.glow
                visible: !bars.active
            }
            Loader {
                id: bars
                anchors.centerIn: parent
                active: row.isSelected && row.isPlaying
                sourceComponent: EqualizerBars {}
            }
        }
    }
}
