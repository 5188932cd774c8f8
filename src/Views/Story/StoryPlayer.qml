import QtQuick
import QtMultimedia
import Navorin

// The finished video, standing at its beginning, with what steers it. Its sound is heard once at first, by a player of
// its own, as a taste of it.
Item {
    id: surface

    property url source
    property var story: null

    Accessible.role: Accessible.Pane
    Accessible.name: "ویدیو"

    MediaPlayer {
        id: taste
        source: surface.source
        audioOutput: AudioOutput {}
        onSourceChanged: play()
    }
    MediaPlayer {
        id: player

        readonly property bool isPlaying: playbackState === MediaPlayer.PlayingState
        // As numbers that the linter knows, unlike those of 64 bits.
        readonly property real length: duration // qmllint disable
        readonly property real reached: position // qmllint disable

        function toggle() {
            if (isPlaying) {
                pause()
                return
            }
            taste.pause() // the same sound twice would be an echo
            play()
        }
        source: surface.source
        videoOutput: picture
        audioOutput: AudioOutput {}
        onSourceChanged: pause() // shows the first frame
        onMediaStatusChanged: if (mediaStatus === MediaPlayer.EndOfMedia) {
            position = 0
            pause()
        }
    }
    VideoOutput {
        id: picture
        anchors.fill: parent
        fillMode: VideoOutput.PreserveAspectFit
    }
    MouseArea {
        anchors.fill: parent
        onClicked: player.toggle()
    }
    Rectangle {
        anchors.bottom: parent.bottom
        width: parent.width
        height: 84
        radius: Theme.panelRadius
        gradient: Gradient {
            GradientStop { position: 0; color: Theme.black(0) }
            GradientStop { position: 0.75; color: Theme.black(0.6) }
        }
    }
    // Time runs from the left here as everywhere.
    Item {
        LayoutMirroring.enabled: false
        LayoutMirroring.childrenInherit: true
        x: 12
        width: parent.width - 24
        height: 40
        anchors.bottom: parent.bottom
        anchors.bottomMargin: 6

        RoundButton {
            id: button
            y: 2
            size: 36
            symbol: player.isPlaying ? "pause.fill" : "play.fill"
            text: player.isPlaying ? "توقف" : "پخش"
            fill: "transparent"
            symbolOpacity: 1
            onClicked: player.toggle()
        }
        NSlider {
            x: 42
            width: parent.width - x - time.width - 8
            anchors.verticalCenter: parent.verticalCenter
            from: 0
            to: Math.max(1, player.length)
            value: player.reached
            tint: "white"
            thickness: 4
            knob: 12
            keyboardStep: 1000
            Accessible.name: "موقعیت پخش"
            onMoved: player.position = value
        }
        NText {
            id: time
            x: parent.width - width
            anchors.verticalCenter: parent.verticalCenter
            width: Theme.grown(36, 36)
            text: surface.story ? surface.story.timeText(player.reached > 0 ? player.reached : player.length) : ""
            role: Theme.caption
            color: Theme.white(0.8)
            horizontalAlignment: Text.AlignHCenter
        }
    }
}
