pragma Singleton
import QtQuick
import Navorin

// Every colour, size and time that more than one screen uses.
QtObject {
    // Sizes as drawn; what is shown follows the desktop's text scale.
    component Role: QtObject {
        required property int drawnSize
        required property int drawnLine
        required property int weight
        readonly property int size: Math.round(drawnSize * Stage.textScale)
        readonly property int line: Math.ceil(drawnLine * Stage.textScale)
    }

    readonly property color accent: ThemeFunctions.accent
    // White text on it keeps a contrast of 5:1, which the accent itself misses.
    readonly property color selected: Qt.darker(accent, 1 / 0.93)
    // Where a fill that begins with the accent ends.
    readonly property color violet: Qt.rgba(0.63, 0.38, 0.96, 1)
    readonly property color background: ThemeFunctions.background
    readonly property color sheet: "#17171b"
    readonly property color live: "#ff6b6b"
    readonly property color success: "#3ddc84"
    readonly property color warning: "#ffae42"
    readonly property color heart: "#ff6b81"

    // Names of the two cuts: ours draws every digit as a Persian one, the other leaves a text as it is.
    readonly property string ownFamily: "Vazirmatn FD"
    readonly property string outsideFamily: "Vazirmatn"

    readonly property Role smallCaption: Role { drawnSize: 12; drawnLine: 20; weight: Font.Normal }
    readonly property Role caption: Role { drawnSize: 13; drawnLine: 22; weight: Font.Medium }
    readonly property Role rowTitle: Role { drawnSize: 14; drawnLine: 22; weight: Font.DemiBold }
    readonly property Role button: Role { drawnSize: 15; drawnLine: 24; weight: Font.DemiBold }
    readonly property Role section: Role { drawnSize: 17; drawnLine: 28; weight: Font.Bold }
    readonly property Role sheetTitle: Role { drawnSize: 20; drawnLine: 32; weight: Font.Bold }
    readonly property Role screenTitle: Role { drawnSize: 22; drawnLine: 34; weight: Font.Bold }
    readonly property Role wordmark: Role { drawnSize: 26; drawnLine: 38; weight: Font.Black }
    readonly property Role libraryTitle: Role { drawnSize: 26; drawnLine: 38; weight: Font.ExtraBold }
    readonly property Role wideTitle: Role { drawnSize: 28; drawnLine: 44; weight: Font.Bold }

    readonly property int rowRadius: 8
    readonly property int miniArtRadius: 10
    readonly property int codeBoxRadius: 12
    readonly property int artRadius: 14
    readonly property int panelRadius: 18
    readonly property int miniRadius: 20
    readonly property int sheetRadius: 24

    readonly property color rowFill: white(0.04)
    readonly property color panelFill: white(0.05)
    readonly property color chipFill: white(0.07)
    readonly property color secondaryFill: white(0.08)
    readonly property color discFill: white(0.10)
    readonly property color trackFill: white(0.14)
    readonly property color hairline: white(0.08)
    readonly property color focusRing: white(0.92)

    readonly property int hoverTime: 120

    // Heights that several screens share.
    readonly property int trackHeight: grown(64, 42)
    readonly property int resultHeight: grown(60, 42)
    readonly property int captionHeight: grown(54, 42)
    // What a list leaves free at its end for the mini player.
    readonly property int miniSpace: grown(110, 46)

    // Widths of the window at which the layout changes.
    readonly property int mediumFrom: 640
    readonly property int wideFrom: 1100
    // The longest row that an eye follows from end to end.
    readonly property int columnWidth: 1080

    // A length as drawn, of which so much is text and grows with it.
    function grown(length: real, text: real): int {
        return Math.ceil(length + text * (Stage.textScale - 1))
    }
    // Milliseconds of a movement; none where things are to stand still. What only fades needs not ask.
    function motionTime(duration: int): int {
        return Stage.reducedMotion ? 0 : duration
    }
    function white(opacity: real): color {
        return Qt.rgba(1, 1, 1, opacity)
    }
    function black(opacity: real): color {
        return Qt.rgba(0, 0, 0, opacity)
    }
}
