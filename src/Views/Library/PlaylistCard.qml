import QtQuick
import Navorin

// A playlist of the user's: its cover with the menu's button on it, its title and how much it holds.
ScaleButtonStyle {
    id: card

    required property string title
    required property string line
    required property string artworkAddress
    // The grid's current card: its button is the Tab key's next step.
    property bool isCurrent: false

    // With where in the card the menu is to open.
    signal menuRequested(at: point)
    signal deleteRequested

    text: title
    radius: Theme.artRadius
    ringed: cover
    focusPolicy: Qt.ClickFocus
    Accessible.description: line
    Keys.onMenuPressed: menuRequested(Qt.point(width / 2, cover.height / 2))
    Keys.onDeletePressed: deleteRequested()

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
                color: card.down ? Theme.black(0.14) : Theme.white(0.06 * card.glow)
                border.width: 1
                border.color: Theme.hairline
            }
            ScaleButtonStyle {
                id: more
                x: 8
                y: 8
                width: 30
                height: 30
                radius: 15
                text: "گزینهها"
                focusPolicy: card.isCurrent ? Qt.TabFocus : Qt.NoFocus
                onClicked: card.menuRequested(Qt.point(x, y + height + 4))

                background: Rectangle {
                    radius: more.radius
                    color: Theme.black(0.5 + 0.2 * more.glow)
                }
                Icon {
                    anchors.centerIn: parent
                    symbol: "ellipsis"
                    size: 20
                }
            }
        }
        NText {
            id: caption
            anchors.top: cover.bottom
            anchors.topMargin: 10
            width: parent.width
            text: card.title
            isOutside: true
        }
        NText {
            anchors.top: caption.bottom
            width: parent.width
            text: card.line
            role: Theme.smallCaption
            color: Theme.white(0.6)
        }
    }
    TapHandler {
        acceptedButtons: Qt.RightButton
        onTapped: point => card.menuRequested(point.position)
    }
}
