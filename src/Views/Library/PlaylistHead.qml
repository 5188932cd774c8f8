import QtQuick
import Navorin

// What stands above a playlist's tracks.
Item {
    id: head

    required property PlaylistDetailViewState playlist

    implicitHeight: column.height

    Column {
        id: column
        width: parent.width
        spacing: 16

        Item {
            width: parent.width
            height: Math.max(112, names.height + 16)

            Shadow {
                anchors.fill: cover
                radius: Theme.artRadius
                opacity: 0.35
            }
            ArtworkImage {
                id: cover
                anchors.left: parent.left
                anchors.top: parent.top
                width: 96
                height: 96
                cornerRadius: Theme.artRadius
                address: head.playlist.coverAddress
            }
            Column {
                id: names
                anchors.left: cover.right
                anchors.leftMargin: 16
                anchors.right: play.visible ? play.left : parent.right
                anchors.rightMargin: 16
                y: Math.max(0, (cover.height - height) / 2)

                NText {
                    width: parent.width
                    text: head.playlist.title
                    role: Theme.screenTitle
                    isOutside: true
                }
                NText {
                    width: parent.width
                    visible: text !== ""
                    text: head.playlist.description
                    role: Theme.caption
                    font.weight: Font.Normal
                    color: Theme.white(0.6)
                    isOutside: true
                    wrapMode: Text.Wrap
                    maximumLineCount: 2
                    Accessible.role: Accessible.StaticText
                    Accessible.name: text
                }
            }
            ScaleButtonStyle {
                id: play
                anchors.right: parent.right
                anchors.verticalCenter: cover.verticalCenter
                width: 48
                height: 48
                radius: 24
                text: "پخش"
                visible: head.playlist.hasTracks
                onClicked: head.playlist.play(0)

                background: Rectangle {
                    radius: play.radius
                    color: play.down ? Qt.darker(Theme.selected, 1.1) : Qt.lighter(Theme.selected, 1 + 0.12 * play.glow)
                }
                Icon {
                    anchors.centerIn: parent
                    symbol: "play.fill"
                    size: 26
                }
            }
        }
        Notice {
            width: parent.width
            text: head.playlist.canRetry ? "" : head.playlist.error
            isFailure: true
            bottomPadding: 12
        }
    }
}
