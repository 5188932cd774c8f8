import QtQuick
import Navorin

// Moves a number like a spring of this response and damping would.
NumberAnimation {
    property real response: 0.4
    property real damping: 0.85

    duration: Theme.motionTime(ThemeFunctions.springDuration(response, damping))
    easing.type: Easing.BezierSpline
    easing.bezierCurve: ThemeFunctions.springCurve(response, damping)
}
