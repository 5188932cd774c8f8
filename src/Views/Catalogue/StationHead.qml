import QtQuick
import Navorin

// What a station is called and looks like, and the button that plays all of it.
Item {
    id: head

    required property StationDetailViewState detail
    required property real margin

    height: 116

    ArtworkImage {
        id: cover
        x: parent.width - head.margin - width
        width: 96
        height: 96
        cornerRadius: Theme.artRadius
        symbolSize: 36
        address: head.detail.artworkAddress

        Shadow {
            anchors.fill: parent
            z: -1
            radius: Theme.artRadius
            opacity: 0.35
        }
    }
    Column {
        x: playAll.x + playAll.width + 16
        anchors.verticalCenter: cover.verticalCenter
        width: cover.x - x - 16

        NText {
            width: parent.width
            text: head.detail.title
            role: Theme.screenTitle
            isOutside: true
            Accessible.role: Accessible.Heading
            Accessible.name: text
        }
        NText {
            width: parent.width
            text: head.detail.trackCount
            role: Theme.caption
            font.weight: Font.Normal
            color: Theme.white(0.5)
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
    }
    ScaleButtonStyle {
        id: playAll
        x: head.margin
        anchors.verticalCenter: cover.verticalCenter
        width: 48
        height: 48
        radius: 24
        text: "پخش همه"
        onClicked: head.detail.play(0)

        background: Rectangle {
            radius: playAll.radius
            color: playAll.down ? Qt.darker(Theme.accent, 1.16) : Qt.lighter(Theme.accent, 1 + 0.06 * playAll.glow)
        }
        Icon {
            anchors.centerIn: parent
            symbol: "play.fill"
            size: 26
        }
    }
}
