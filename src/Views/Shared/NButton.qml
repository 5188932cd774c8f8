import QtQuick
import Navorin

// A button with a label, and a symbol before it if it has one.
ScaleButtonStyle {
    id: button

    property string symbol
    property bool isPrimary: false
    // A fill of its own, from the leading side to the other.
    property bool isColored: false
    property color leadingColor: Theme.selected
    property color trailingColor: leadingColor
    readonly property Gradient sideways: Gradient {
        orientation: Gradient.Horizontal
        GradientStop { position: 0; color: button.trailingColor }
        GradientStop { position: 1; color: button.leadingColor }
    }
    readonly property Gradient downwards: Gradient {
        GradientStop { position: 0; color: button.isPrimary ? Qt.lighter(Theme.selected, 1.06) : Theme.secondaryFill }
        GradientStop { position: 1; color: button.isPrimary ? Qt.darker(Theme.selected, 1.1) : Theme.secondaryFill }
    }
    // The spinner stands for the label; the width holds.
    property bool isWaiting: false
    // The spinner stands for the symbol, beside the label.
    property bool hasSpinner: false

    radius: Theme.artRadius
    implicitWidth: row.width + 40
    implicitHeight: Theme.grown(44, 24)
    enabled: !isWaiting
    opacity: enabled || isWaiting ? 1 : 0.4

    background: Rectangle {
        radius: button.radius
        border.width: 1
        border.color: button.isColored ? Theme.white(0.16) : button.isPrimary ? Qt.lighter(Theme.selected, 1.22) : Theme.white(0.14)
        gradient: button.isColored ? button.sideways : button.downwards

        Rectangle {
            anchors.fill: parent
            radius: button.radius
            color: button.down ? Theme.black(0.14) : Theme.white(0.06 * button.glow)
        }
    }
    Row {
        id: row
        anchors.centerIn: parent
        spacing: 10
        opacity: button.isWaiting ? 0 : 1

        Icon {
            anchors.verticalCenter: parent.verticalCenter
            symbol: button.symbol
            size: 20
            visible: button.symbol !== ""
        }
        Spinner {
            anchors.verticalCenter: parent.verticalCenter
            size: 18
            running: button.hasSpinner
        }
        NText {
            anchors.verticalCenter: parent.verticalCenter
            text: button.text
            role: Theme.button
        }
    }
    Spinner {
        anchors.centerIn: parent
        size: 20
        running: button.isWaiting
    }
}
