import QtQuick
import Navorin

Item {
    id: line

    required property FullPlayerViewState player

    LayoutMirroring.enabled: false
    LayoutMirroring.childrenInherit: true
    implicitHeight: 28

    Icon {
        id: quiet
        anchors.left: parent.left
        anchors.verticalCenter: parent.verticalCenter
        symbol: "speaker.fill"
        size: 18
        opacity: 0.45
    }
    NSlider {
        anchors.left: quiet.right
        anchors.leftMargin: 8
        anchors.right: loud.left
        anchors.rightMargin: 8
        anchors.verticalCenter: parent.verticalCenter
        value: line.player.volume
        tint: Theme.white(0.75)
        thickness: 3
        knob: 12
        keyboardStep: 0.05
        Accessible.name: "بلندی صدا"
        onMoved: line.player.volume = value

        WheelHandler {
            onWheel: event => line.player.volume = Math.max(0, Math.min(1, line.player.volume
                                                                           + 0.05 * Math.sign(event.angleDelta.y)))
        }
    }
    Icon {
        id: loud
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        symbol: "speaker.wave.3.fill"
        size: 18
        opacity: 0.45
    }
}
