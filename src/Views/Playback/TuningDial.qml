import QtQuick

// The scale of an old receiver. On a track its lit part is what was heard; on a live station the light stands
// where the station is tuned in. Runs left to right like everything that tells time.
Item {
    id: dial

    // 0 to 1; below 0 on a live station.
    required property real progress
    required property bool isPlaying
    required property color tone

    readonly property real step: 9
    readonly property int ticks: Math.max(0, Math.floor(width / step))

    height: 22

    Repeater {
        model: dial.ticks

        Rectangle {
            required property int index
            readonly property real place: (index + 0.5) / dial.ticks
            readonly property real edge: Math.min(1, 6 * Math.min(place, 1 - place))
            readonly property real away: (place - 0.5) * dial.width / 46
            readonly property real lit: dial.progress < 0 ? Math.exp(-away * away)
                                                          : place <= dial.progress ? 1 : 0

            x: Math.round((index + 0.5) * dial.step)
            y: (dial.height - height) / 2
            width: 2
            height: index % 5 === 2 ? 18 : 9
            radius: 1
            color: lit > 0.04 ? dial.tone : "white"
            opacity: edge * (0.13 + 0.72 * lit * (dial.isPlaying ? 1 : 0.45))

            Behavior on opacity { NumberAnimation { duration: 400 } }
        }
    }
}
