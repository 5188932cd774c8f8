import QtQuick
import Navorin

// Shows which control the keyboard acts on, around `parent`.
Rectangle {
    property real around: 0
    property Item control: parent

    anchors.fill: parent
    anchors.margins: -4
    radius: around + 4
    color: "transparent"
    border.width: 2
    border.color: Theme.focusRing
    visible: control.activeFocus && Stage.keyboardSteers
}
