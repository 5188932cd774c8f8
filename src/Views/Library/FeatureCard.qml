import QtQuick
import Navorin

// A wide card that leads somewhere or plays something: a tinted symbol, a title and a line below it.
ScaleButtonStyle {
    id: card

    required property string symbol
    required property color tone
    required property string line
    // Of the disc at the far end; empty for none.
    property string actionSymbol

    implicitHeight: Math.max(Theme.grown(84, 46), words.height + 24)
    radius: Theme.panelRadius
    Accessible.description: line

    background: Rectangle {
        radius: card.radius
        color: card.down ? Theme.white(0.03) : Theme.white(0.05 + 0.06 * card.glow)
        border.width: 1
        border.color: Theme.hairline
    }
    Item {
        anchors.fill: parent
        anchors.leftMargin: 16
        anchors.rightMargin: 16

        Rectangle {
            id: tile
            anchors.left: parent.left
            anchors.verticalCenter: parent.verticalCenter
            width: 52
            height: 52
            radius: Theme.artRadius
            color: Qt.alpha(card.tone, 0.2)

            Icon {
                anchors.centerIn: parent
                symbol: card.symbol
                size: 26
                color: card.tone
            }
        }
        Column {
            id: words
            anchors.left: tile.right
            anchors.leftMargin: 14
            anchors.right: disc.visible ? disc.left : parent.right
            anchors.rightMargin: disc.visible ? 12 : 0
            anchors.verticalCenter: parent.verticalCenter

            NText {
                width: parent.width
                text: card.text
                role: Theme.button
            }
            NText {
                width: parent.width
                text: card.line
                role: Theme.caption
                font.weight: Font.Normal
                color: Theme.white(0.6)
                wrapMode: Text.Wrap
                maximumLineCount: 2
                visible: text !== ""
            }
        }
        Rectangle {
            id: disc
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            visible: card.actionSymbol !== ""
            width: 42
            height: 42
            radius: 21
            color: Theme.white(0.10 + 0.06 * card.glow)

            Icon {
                anchors.centerIn: parent
                symbol: card.actionSymbol
                size: 24
            }
        }
    }
}
