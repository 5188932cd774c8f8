import QtQuick
import Navorin

// What a link leads to, before it is played or kept.
Column {
    id: preview

    required property SpotifyImportState spotify

    spacing: 12

    Rectangle {
        width: parent.width
        height: 96
        radius: Theme.artRadius
        color: Theme.rowFill
        border.width: 1
        border.color: Theme.hairline

        ArtworkImage {
            id: cover
            anchors.left: parent.left
            anchors.leftMargin: 12
            anchors.verticalCenter: parent.verticalCenter
            width: 72
            height: 72
            cornerRadius: Theme.miniArtRadius
            address: preview.spotify.coverAddress
        }
        Column {
            anchors.left: cover.right
            anchors.leftMargin: 14
            anchors.right: parent.right
            anchors.rightMargin: 14
            anchors.verticalCenter: parent.verticalCenter

            NText {
                width: parent.width
                text: preview.spotify.title
                role: Theme.button
                isOutside: true
                visible: text !== ""
                Accessible.role: Accessible.StaticText
                Accessible.name: text
            }
            NText {
                width: parent.width
                text: preview.spotify.line
                role: Theme.caption
                font.weight: Font.Normal
                color: Theme.white(0.6)
                isOutside: true
                Accessible.role: Accessible.StaticText
                Accessible.name: text
            }
        }
    }
    Row {
        readonly property bool hasBoth: preview.spotify.canPlay && preview.spotify.canSave
        readonly property real share: hasBoth ? (width - spacing) / 2 : width

        width: parent.width
        spacing: 10

        NButton {
            width: parent.share
            text: "پخش"
            symbol: "play.fill"
            isPrimary: true
            visible: preview.spotify.canPlay
            onClicked: preview.spotify.play()
        }
        NButton {
            width: parent.share
            text: preview.spotify.isLoading ? "در حال ذخیره…" : "ذخیره"
            symbol: "square.and.arrow.down"
            visible: preview.spotify.canSave
            enabled: !preview.spotify.isLoading
            onClicked: preview.spotify.save()
        }
    }
}
