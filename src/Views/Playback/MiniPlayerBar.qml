import QtQuick
import Navorin

ScaleButtonStyle {
    id: bar

    readonly property MiniPlayerBarState player: MiniPlayerBarState {}
    readonly property color ink: ThemeFunctions.ink(player.themeColor)
    readonly property color panel: ThemeFunctions.blend(ThemeFunctions.blend(Theme.background, "white", 0.08),
                                                        player.themeColor, 0.14)
    readonly property bool isRoomy: width >= 560

    text: player.title
    radius: Theme.miniRadius
    implicitHeight: Theme.grown(72, 46)
    Accessible.description: player.stationName
    onClicked: player.openFullPlayer()

    background: Rectangle {
        radius: bar.radius
        color: bar.panel
        border.width: 1
        border.color: ThemeFunctions.blend(bar.panel, "white", 0.08)

        Shadow {
            anchors.fill: parent
            z: -1
            radius: Theme.miniRadius
            blur: 36
            drop: 14
            opacity: 0.6
        }
        Rectangle {
            anchors.fill: parent
            radius: bar.radius
            color: bar.down ? Theme.black(0.14) : Theme.white(0.04 * bar.glow)
        }
    }
    Item {
        anchors.fill: parent
        anchors.leftMargin: 12
        anchors.rightMargin: 12

        ArtworkImage {
            id: art
            anchors.left: parent.left
            anchors.verticalCenter: parent.verticalCenter
            width: 48
            height: 48
            cornerRadius: Theme.miniArtRadius
            symbolSize: 22
            address: bar.player.artworkAddress
        }
        Column {
            id: names
            anchors.left: art.right
            anchors.leftMargin: 12
            anchors.verticalCenter: parent.verticalCenter
            width: bar.isRoomy ? Math.min(Math.max(title.implicitWidth, station.implicitWidth), parent.width * 0.45)
                               : parent.width - art.width - toggle.width - 26

            NText {
                id: title
                width: parent.width
                text: bar.player.title
                role: Theme.button
                isOutside: true
            }
            NText {
                id: station
                width: parent.width
                text: bar.player.stationName
                role: Theme.caption
                font.weight: Font.Normal
                color: Theme.white(0.6)
                isOutside: true
            }
        }
        TuningDial {
            anchors.left: names.right
            anchors.leftMargin: 32
            anchors.right: toggle.left
            anchors.rightMargin: 28
            anchors.verticalCenter: parent.verticalCenter
            visible: bar.isRoomy
            progress: bar.player.progress
            isPlaying: bar.player.isPlaying
            tone: bar.ink
        }
        ScaleButtonStyle {
            id: toggle
            anchors.right: parent.right
            anchors.rightMargin: 2
            anchors.verticalCenter: parent.verticalCenter
            width: 42
            height: 42
            radius: 21
            text: bar.player.buttonName
            onClicked: bar.player.togglePlayPause()

            background: Rectangle {
                radius: toggle.radius
                color: Theme.white(0.10 + 0.06 * toggle.glow)
            }
            Icon {
                anchors.centerIn: parent
                symbol: bar.player.buttonSymbol
                size: 24
                color: bar.ink
                visible: !bar.player.isWaiting
            }
            Spinner {
                anchors.centerIn: parent
                size: 22
                color: bar.ink
                running: bar.player.isWaiting
            }
        }
    }
}
