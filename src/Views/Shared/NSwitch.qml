import QtQuick
import QtQuick.Templates as T
import Navorin

// On lies to the left, where reading goes.
T.Switch {
    id: control

    implicitWidth: 50
    implicitHeight: 30
    hoverEnabled: true
    Accessible.role: Accessible.CheckBox
    Accessible.name: text
    Accessible.checkable: true
    Accessible.checked: checked
    Accessible.onPressAction: {
        toggle()
        toggled()
    }
    Accessible.onToggleAction: {
        toggle()
        toggled()
    }
    Keys.onReturnPressed: {
        toggle()
        toggled()
    }

    indicator: Rectangle {
        anchors.fill: parent
        radius: height / 2
        color: control.checked ? Theme.selected : Theme.white(0.16 + 0.06 * (control.hovered ? 1 : 0))

        Behavior on color { ColorAnimation { duration: Theme.hoverTime } }

        Rectangle {
            x: control.checked ? 3 : parent.width - width - 3
            y: 3
            width: 24
            height: 24
            radius: 12
            color: "white"

            Behavior on x { SpringMotion { response: 0.3; damping: 0.8 } }
        }
    }
    FocusRing {
        control: control
        around: control.height / 2
    }
}
