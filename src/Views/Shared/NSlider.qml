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
    readonly property real shown: visualPosition

    LayoutMirroring.enabled: false
    implicitWidth: 200
    implicitHeight: 28
    hoverEnabled: true
    live: true
    Accessible.role: Accessible.Slider

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
