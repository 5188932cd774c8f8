import QtQuick
import Navorin

// The song that was recognised, and the way to play it.
Rectangle {
    id: card

    required property ShazamViewState shazam

    implicitHeight: play.y + play.height + 16
    radius: 22
    color: Theme.white(0.05)
    border.width: 1
    border.color: Theme.white(0.1)

    Shadow {
        anchors.fill: artwork
        radius: 16
        opacity: 0.4
    }
    ArtworkImage {
        id: artwork
        x: parent.width - width - 16
        y: 16
        width: 128
        height: 128
        cornerRadius: 16
        address: card.shazam.artworkAddress
    }
    Column {
        id: names
        y: artwork.y + Math.max(0, (artwork.height - height) / 2)
        x: 16
        width: artwork.x - 32
        spacing: 4

        NText {
            width: parent.width
            text: card.shazam.title
            role: Theme.sheetTitle
            isOutside: true
            wrapMode: Text.Wrap
            maximumLineCount: 2
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
        NText {
            width: parent.width
            visible: text !== ""
            text: card.shazam.artist
            role: Theme.button
            font.weight: Font.Normal
            isOutside: true
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
        NText {
            width: parent.width
            visible: text !== ""
            text: card.shazam.genre
            role: Theme.smallCaption
            isOutside: true
            color: Theme.white(0.5)
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
    }
    ShaderEffect {
        readonly property color tone: Theme.violet
        readonly property real strength: 0.4

        anchors.centerIn: play
        anchors.verticalCenterOffset: 5
        width: play.width * 1.08
        height: play.height * 2
        fragmentShader: "qrc:/navorin/shaders/Halo.frag.qsb"
    }
    NButton {
        id: play
        x: 16
        y: artwork.y + Math.max(artwork.height, names.height) + 16
        width: parent.width - 32
        implicitHeight: Theme.grown(48, 24)
        text: "پخش در رادیو"
        symbol: "play.fill"
        isColored: true
        leadingColor: Theme.violet
        onClicked: card.shazam.play()
    }
}
