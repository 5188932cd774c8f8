import QtQuick
import QtQuick.Templates as T
import Navorin

// What every pressable thing is made of: it shrinks under the finger, shows the keyboard's focus and tells
// assistive technology what it is.
T.AbstractButton {
    id: control

    // Corner radius that the focus ring goes around.
    property real radius: 0
    // What the ring goes around, if not all of it.
    property Item ringed: control
    // 0 to 1: how much of the hover light is on.
    property real glow: hovered && enabled ? 1 : 0

    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    hoverEnabled: true
    scale: down ? 0.96 : 1
    Accessible.role: Accessible.Button // the template knows no other
    Accessible.name: text
    Accessible.onPressAction: if (enabled) clicked()
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()

    Behavior on scale { SpringMotion { response: 0.3; damping: 0.7 } }
    Behavior on glow { NumberAnimation { duration: Theme.hoverTime; easing.type: Easing.OutQuad } }

    FocusRing {
        parent: control.ringed
        control: control
        around: control.radius
    }
}
