import QtQuick
import QtQuick.Templates as T
import Navorin

// A line and its translation. The one that is sung grows from its leading edge without taking more room, so that the
// lines around it stay where they are.
T.AbstractButton {
    id: row

    required property int index
    required property string words
    required property string translation
    required property bool isTimed
    property bool isActive: false
    property bool canSeek: false
    // 0 without translations, 1 with them.
    property real translated: 1

    readonly property bool hasTranslation: translation !== ""
    readonly property real grown: 22 / 19
    // 0 while it is not sung, 1 while it is.
    property real light: isActive ? 1 : 0

    implicitHeight: lyric.height + (hasTranslation ? (6 + meaning.height) * translated : 0)
    focusPolicy: Qt.NoFocus // the list has the keyboard
    hoverEnabled: canSeek && isTimed
    text: words
    Accessible.role: Accessible.Button
    Accessible.name: hasTranslation && translated > 0 ? words + "\n" + translation : words
    Accessible.selected: isActive
    Accessible.onPressAction: clicked()

    Behavior on light { NumberAnimation { duration: Theme.motionTime(300); easing.type: Easing.InOutQuad } }

    component Line: NText {
        property real growth: 1

        width: row.width / row.grown
        isOutside: true
        // Glyphs that keep their shape at any size.
        renderType: Text.QtRendering
        wrapMode: Text.Wrap
        lineHeightMode: Text.ProportionalHeight
        lineHeight: 1
        maximumLineCount: 8
        transform: Scale {
            origin.x: row.mirrored ? width : 0
            origin.y: height / 2
            xScale: 1 + (growth - 1) * row.light
            yScale: xScale
        }
    }

    FocusRing {
        control: row
        around: 10
        anchors.margins: -8
        visible: row.ListView.isCurrentItem && Stage.keyboardSteers && row.ListView.view.activeFocus
    }
    Line {
        id: lyric
        x: row.width - width
        text: row.words
        growth: row.grown
        font.pixelSize: Math.round(19 * Stage.textScale)
        font.weight: row.isActive ? Font.Bold : Font.Medium
        opacity: 0.38 + 0.62 * row.light + (row.hovered ? 0.14 * (1 - row.light) : 0)
    }
    Line {
        id: meaning
        x: row.width - width
        y: lyric.height + 6
        text: row.translation
        growth: 16 / 14
        font.pixelSize: Math.round(14 * Stage.textScale)
        font.weight: Font.Medium
        visible: row.hasTranslation && row.translated > 0.01
        color: ThemeFunctions.blend("white", Theme.accent, row.light)
        opacity: (0.3 + 0.65 * row.light) * Math.max(0, Math.min(1, row.translated))
    }
}
