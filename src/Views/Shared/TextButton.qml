import QtQuick
import Navorin

// A button that is only its words.
ScaleButtonStyle {
    id: button

    property color color: Theme.white(0.75)

    implicitWidth: label.implicitWidth + 16
    implicitHeight: Theme.grown(36, 22)
    radius: 8

    background: Rectangle {
        radius: button.radius
        color: Theme.white(0.06 * button.glow)
    }
    NText {
        id: label
        anchors.centerIn: parent
        text: button.text
        role: Theme.rowTitle
        color: button.color
        opacity: button.enabled ? 1 : 0.4
    }
}
