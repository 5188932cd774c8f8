import QtQuick
import Navorin

// A choice of few, side by side; the chosen one's light slides there.
Rectangle {
    id: control

    required property var labels
    required property int current
    readonly property real segment: (width - 8) / labels.length

    signal chosen(index: int)

    implicitHeight: Theme.grown(44, 22)
    radius: Theme.codeBoxRadius
    color: Theme.panelFill
    border.width: 1
    border.color: Theme.hairline
    Accessible.role: Accessible.PageTabList

    Rectangle {
        // The first label stands on the leading side.
        x: 4 + (control.labels.length - 1 - control.current) * control.segment
        y: 4
        width: control.segment
        height: parent.height - 8
        radius: 9
        color: Theme.selected

        Behavior on x { NumberAnimation { duration: Theme.motionTime(200); easing.type: Easing.InOutQuad } }
    }
    Repeater {
        model: control.labels

        ScaleButtonStyle {
            id: segment

            required property int index
            required property string modelData

            x: 4 + (control.labels.length - 1 - index) * control.segment
            y: 4
            width: control.segment
            height: control.height - 8
            radius: 9
            text: modelData
            checkable: false
            Accessible.role: Accessible.PageTab
            Accessible.selected: index === control.current
            onClicked: control.chosen(index)

            NText {
                anchors.centerIn: parent
                text: segment.text
                role: Theme.rowTitle
                color: segment.index === control.current ? "white" : Theme.white(0.65 + 0.25 * segment.glow)
            }
        }
    }
}
