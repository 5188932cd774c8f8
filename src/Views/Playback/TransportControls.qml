import QtQuick
import Navorin

// The five buttons, in the order of time: back on the left in every language.
Row {
    id: transport

    required property FullPlayerViewState player
    required property real playButton

    LayoutMirroring.enabled: false
    LayoutMirroring.childrenInherit: true
    spacing: 14

    component Step: ScaleButtonStyle {
        id: step

        required property string symbol
        property real symbolSize: 30

        anchors.verticalCenter: parent.verticalCenter
        width: 54
        height: 54
        radius: 27
        opacity: enabled ? 1 : 0.25

        background: Rectangle {
            radius: step.radius
            color: step.down ? Theme.black(0.14) : Theme.white(0.08 * step.glow)
        }
        Icon {
            anchors.centerIn: parent
            symbol: step.symbol
            size: step.symbolSize
        }
    }

    Step {
        symbol: "gobackward.10"
        text: "۱۰ ثانیه عقب"
        enabled: transport.player.canSkipTime
        symbolSize: 27
        onClicked: transport.player.skip(-10)
    }
    Step {
        symbol: "backward.fill"
        text: "آهنگ قبلی"
        enabled: transport.player.canSkipTracks
        symbolSize: 34
        onClicked: transport.player.previousTrack()
    }
    ScaleButtonStyle {
        id: play
        anchors.verticalCenter: parent.verticalCenter
        width: transport.playButton
        height: width
        radius: width / 2
        text: transport.player.buttonName
        focus: true
        onClicked: transport.player.togglePlayPause()

        background: Item {
            DiscShadow {
                anchors.fill: parent
            }
            Rectangle {
                anchors.fill: parent
                radius: play.radius
                color: play.down ? "#dcdce0" : play.glow > 0 ? "#f3f3f6" : "white"
            }
        }
        Icon {
            anchors.centerIn: parent
            symbol: transport.player.buttonSymbol
            size: play.width * 0.56
            color: "#111114"
            visible: !transport.player.isWaiting
        }
        Spinner {
            anchors.centerIn: parent
            size: play.width * 0.42
            color: "#111114"
            running: transport.player.isWaiting
        }
    }
    Step {
        symbol: "forward.fill"
        text: "آهنگ بعدی"
        enabled: transport.player.canSkipTracks
        symbolSize: 34
        onClicked: transport.player.nextTrack()
    }
    Step {
        symbol: "goforward.10"
        text: "۱۰ ثانیه جلو"
        enabled: transport.player.canSkipTime
        symbolSize: 27
        onClicked: transport.player.skip(10)
    }
}
