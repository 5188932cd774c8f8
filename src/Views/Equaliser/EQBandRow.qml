import QtQuick
import Navorin

// One band: its name, its gain on a line with the zero in the middle, and the gain in figures.
Item {
    id: row

    required property EQViewState eq
    required property int index
    required property string modelData
    readonly property real gain: eq.gains[index]

    height: Theme.grown(40, 22)
    enabled: eq.areBandsMovable

    NText {
        id: label
        anchors.left: parent.left
        anchors.verticalCenter: parent.verticalCenter
        width: Theme.grown(66, 66)
        text: row.modelData
        role: Theme.caption
        color: Theme.white(0.6)
        fontSizeMode: Text.HorizontalFit
        elide: Text.ElideNone
    }
    NSlider {
        x: figure.width + 8
        width: parent.width - label.width - figure.width - 16
        anchors.verticalCenter: parent.verticalCenter
        from: row.eq.lowestGain
        to: row.eq.highestGain
        value: row.gain
        origin: 0.5
        hasOriginMark: true
        tint: row.enabled ? Theme.accent : ThemeFunctions.blend(Theme.sheet, Theme.accent, 0.7)
        thickness: 4
        keyboardStep: 1
        Accessible.name: row.modelData
        Accessible.description: figure.text
        onMoved: row.eq.setGain(row.index, value)
    }
    NText {
        id: figure
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        width: Theme.grown(34, 34)
        text: row.eq.gainText(row.gain)
        role: Theme.caption
        horizontalAlignment: Text.AlignRight
        color: Theme.white(0.7)
    }
}
