import QtQuick
import Navorin

// Four bars that swing while they can be seen.
Row {
    id: bars

    property color tint: "white"
    property bool running: true

    height: 20
    spacing: 4
    LayoutMirroring.enabled: false

    Repeater {
        model: [
            { up: 19, down: 8, delay: 0 },
            { up: 9, down: 15, delay: 140 },
            { up: 14, down: 19, delay: 280 },
            { up: 8, down: 13, delay: 420 }
        ]

        Rectangle {
            id: bar

            required property var modelData
            property real swing: bar.modelData.down

            y: bars.height - height
            width: 3.6
            height: 19
            radius: 1.6
            color: bars.tint
            transform: Scale {
                origin.y: bar.height
                yScale: bar.swing / bar.height
            }

            SequentialAnimation {
                running: bars.running && bars.visible && Stage.isSeen

                PauseAnimation { duration: bar.modelData.delay }
                SequentialAnimation {
                    loops: Animation.Infinite

                    Swing { from: bar.modelData.down; to: bar.modelData.up }
                    Swing { from: bar.modelData.up; to: bar.modelData.down }
                }
            }

            component Swing: NumberAnimation {
                target: bar
                property: "swing"
                duration: 420
                easing.type: Easing.InOutSine
            }
        }
    }
}
