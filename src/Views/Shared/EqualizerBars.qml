import QtQuick
import Navorin

// Four bars that swing while they can be seen, or stand where nothing is to move. They may swing for hours, so they
// move thirty times a second: each step draws the whole window anew.
Row {
    id: bars

    property color tint: "white"
    property bool running: true
    // Seconds since they began.
    property real time: 0

    // From the height when down to that when up and back, easing in and out, each way in 0.42 s.
    function heightAt(down: real, up: real, elapsed: real): real {
        const share = (1 - Math.cos(Math.PI * Math.max(0, elapsed) / 0.42)) / 2
        return down + (up - down) * share
    }

    height: 20
    spacing: 4
    LayoutMirroring.enabled: false

    Timer {
        interval: 33
        repeat: true
        running: bars.running && bars.visible && Stage.isSeen && !Stage.reducedMotion
        onTriggered: bars.time += interval / 1000
    }
    Repeater {
        model: [
            { up: 19, down: 8, delay: 0 },
            { up: 9, down: 15, delay: 0.14 },
            { up: 14, down: 19, delay: 0.28 },
            { up: 8, down: 13, delay: 0.42 }
        ]

        Rectangle {
            id: bar

            required property var modelData

            y: bars.height - height
            width: 3.6
            height: 19
            radius: 1.6
            color: bars.tint
            transform: Scale {
                origin.y: bar.height
                yScale: bars.heightAt(bar.modelData.down, bar.modelData.up, bars.time - bar.modelData.delay)
                        / bar.height
            }
        }
    }
}
