import QtQuick
import Navorin

// A symbol on a disc; `text` is what it is called.
ScaleButtonStyle {
    id: button

    required property string symbol
    property real size: 40
    property real symbolSize: 22
    property color symbolColor: "white"
    property real symbolOpacity: 0.75
    property color fill: Theme.secondaryFill
    readonly property Item glyph: icon

    implicitWidth: size
    implicitHeight: size
    radius: size / 2

    background: Rectangle {
        radius: button.radius
        color: button.fill

        Rectangle {
            anchors.fill: parent
            radius: button.radius
            color: button.down ? Theme.black(0.14) : Theme.white(0.06 * button.glow)
        }
    }
    Icon {
        id: icon
        anchors.centerIn: parent
        symbol: button.symbol
        size: button.symbolSize
        color: button.symbolColor
        opacity: Math.min(1, button.symbolOpacity + 0.25 * button.glow)
    }
}
