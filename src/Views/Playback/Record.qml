import QtQuick
import Navorin

// The spinning record: only the picture in its middle turns, the light on it stands.
Item {
    id: record

    required property real artwork
    required property real spot
    property string address
    property color tone
    property bool isPlaying: false

    // Turns from the moment it appears, whether or not anything plays yet.
    property bool isRotating: false
    readonly property bool turns: isRotating && !Stage.reducedMotion

    onIsPlayingChanged: isRotating = isPlaying
    Component.onCompleted: isRotating = true

    DiscShadow {
        anchors.fill: parent
        strength: 0.85
        reach: 26
        drop: 14
    }
    RecordDisc {
        anchors.fill: parent
    }
    Item {
        id: turning

        // A clear margin around the picture keeps its rim smooth while it turns.
        readonly property real margin: 2

        anchors.centerIn: parent
        width: record.artwork + 2 * margin
        height: width
        layer.enabled: true
        layer.smooth: true
        layer.mipmap: true

        ArtworkImage {
            anchors.fill: parent
            anchors.margins: turning.margin
            cornerRadius: width / 2
            symbolSize: width / 2
            address: record.address
        }

    }
    NumberAnimation {
        id: turn
        target: turning
        property: "rotation"
        duration: 12000
        loops: Animation.Infinite
    }
    // Comes to rest with the picture upright, on the shorter way.
    RotationAnimation {
        id: rest
        target: turning
        property: "rotation"
        to: 0
        direction: RotationAnimation.Shortest
        duration: Theme.motionTime(450)
        easing.type: Easing.InOutQuad
    }
    Binding {
        target: turn
        property: "paused"
        value: turn.running && !(Stage.isSeen && record.visible)
        when: turn.running
    }
    onTurnsChanged: {
        if (turns) {
            rest.stop()
            turn.from = turning.rotation
            turn.to = turning.rotation + 360
            turn.start()
        } else {
            turn.stop()
            turning.rotation = turning.rotation % 360
            rest.start()
        }
    }
    RecordDisc {
        anchors.centerIn: parent
        width: record.artwork
        height: width
        isSheenOnly: true
        opacity: 0.8
    }
    Rectangle {
        anchors.centerIn: parent
        width: record.spot
        height: width
        radius: width / 2
        color: "#0e0e10"
        border.width: 1
        border.color: Theme.white(0.18)

        Rectangle {
            anchors.centerIn: parent
            width: parent.width * 0.36
            height: width
            radius: width / 2
            color: record.tone
        }
    }
}
