import QtQuick
import Navorin

// Turns while it can be seen.
Icon {
    id: spinner

    property bool running: true

    symbol: "spinner"
    visible: running

    NumberAnimation on rotation {
        from: 0
        to: 360
        duration: 900
        loops: Animation.Infinite
        running: spinner.visible && Stage.isSeen
    }
}
