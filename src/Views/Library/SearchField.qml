import QtQuick
import Navorin

// A line to type in with the button that sends it at its far end.
NField {
    id: field

    required property string buttonSymbol
    required property string buttonName
    property bool canSubmit: true
    // The button's symbol is an arrow that follows the reading direction.
    property bool pointsForward: false
    property bool isWaiting: false

    signal submitted

    symbol: ""
    leftPadding: 56
    rightPadding: symbol === "" ? 16 : 48
    onAccepted: if (canSubmit) submitted()

    ScaleButtonStyle {
        id: button
        x: 6
        anchors.verticalCenter: parent.verticalCenter
        width: 36
        height: 36
        radius: 18
        text: field.buttonName
        enabled: field.canSubmit && !field.isWaiting
        visible: !field.isWaiting
        opacity: enabled ? 1 : 0.4
        onClicked: field.submitted()

        background: Rectangle {
            radius: button.radius
            color: Theme.white(0.08 + 0.06 * button.glow)
        }
        Icon {
            anchors.centerIn: parent
            symbol: field.buttonSymbol
            size: 22
            mirror: field.pointsForward
        }
    }
    Spinner {
        x: 14
        anchors.verticalCenter: parent.verticalCenter
        size: 20
        running: field.isWaiting
    }
}
