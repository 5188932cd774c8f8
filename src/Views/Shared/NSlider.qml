import QtQuick
import QtQuick.Templates as T
import Navorin

// A line that is dragged along. It runs from the left whatever the language: positions, loudness and gains do.
T.Slider {
    id: slider

    property color tint: Theme.accent
    property real thickness: 5
    property real knob: 15
    // Where the fill begins, 0 to 1; the middle for values with a sign.
    property real origin: 0
    property bool hasOriginMark: false
    // What an arrow key adds.
    property real keyboardStep: (to - from) / 20
    readonly property real shown: visualPosition

    function moveTo(target: real) {
        value = Math.max(from, Math.min(to, target))
        moved()
    }

    LayoutMirroring.enabled: false
    implicitWidth: 200
    implicitHeight: 28
    hoverEnabled: true
    live: true
    Accessible.role: Accessible.Slider
    Accessible.onIncreaseAction: moveTo(value + keyboardStep)
    Accessible.onDecreaseAction: moveTo(value - keyboardStep)
    Keys.onRightPressed: moveTo(value + keyboardStep)
    Keys.onUpPressed: moveTo(value + keyboardStep)
    Keys.onLeftPressed: moveTo(value - keyboardStep)
    Keys.onDownPressed: moveTo(value - keyboardStep)

    background: Item {
        Rectangle {
            anchors.verticalCenter: parent.verticalCenter
            x: slider.knob / 2
            width: parent.width - slider.knob
            height: slider.thickness
            radius: height / 2
            color: Theme.trackFill

            Rectangle {
                x: Math.min(slider.origin, slider.shown) * parent.width
                width: Math.abs(slider.shown - slider.origin) * parent.width
                height: parent.height
                radius: height / 2
                color: slider.tint
            }
        }
    }
    Rectangle {
        x: slider.knob / 2 + slider.origin * (slider.width - slider.knob) - 0.5
        anchors.verticalCenter: parent.verticalCenter
        width: 1
        height: slider.thickness + 8
        color: Theme.white(0.35)
        visible: slider.hasOriginMark
    }
    handle: Item {
        x: slider.visualPosition * (slider.availableWidth - width)
        anchors.verticalCenter: parent.verticalCenter
        width: slider.knob
        height: slider.knob

        Rectangle {
            anchors.centerIn: parent
            width: slider.knob
            height: width
            radius: width / 2
            color: "white"
            scale: !slider.enabled ? 8 / slider.knob : slider.pressed ? 1.2 : slider.hovered ? 1.1 : 1
            opacity: slider.enabled ? 1 : 0.6

            Behavior on scale { SpringMotion { response: 0.3; damping: 0.7 } }
        }
        FocusRing {
            control: slider
            around: slider.knob / 2
        }
    }
}
