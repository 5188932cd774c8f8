import QtQuick
import Navorin

// Turns while it can be seen, even where little is to move: one that stood still would say that nothing goes on.
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
