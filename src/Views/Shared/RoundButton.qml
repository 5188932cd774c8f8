import QtQuick
import Navorin

// A symbol on a disc; `text` is what it is called.
ScaleButtonStyle {
    id: button

    required property string symbol
    property real size: 40
    property real symbolSize: 22
    property color symbolColor: "white"

    implicitWidth: size
    implicitHeight: size
    radius: size / 2

    background: Rectangle {
        radius: button.radius
        color: button.down ? Theme.white(0.04) : Theme.white(0.08 + 0.06 * button.glow)
    }
    Icon {
        anchors.centerIn: parent
        symbol: button.symbol
        size: button.symbolSize
        color: button.symbolColor
        opacity: 0.75 + 0.25 * button.glow
    }
}
