pragma Singleton
import QtQuick
import Navorin

// Every colour, size and time that more than one screen uses.
QtObject {
    component Role: QtObject {
        property int size
        property int weight
        property int line
    }

    readonly property color accent: ThemeFunctions.accent
    // White text on it keeps a contrast of 5:1, which the accent itself misses.
    readonly property color selected: Qt.darker(accent, 1 / 0.93)
    readonly property color background: ThemeFunctions.background
    readonly property color sheet: "#17171b"
    readonly property color live: "#ff6b6b"
    readonly property color success: "#3ddc84"
    readonly property color warning: "#ffae42"
    readonly property color heart: "#ff6b81"

    // Names of the two cuts: ours draws every digit as a Persian one, the other leaves a text as it is.
    readonly property string ownFamily: "Vazirmatn FD"
    readonly property string outsideFamily: "Vazirmatn"

    readonly property Role smallCaption: Role { size: 12; weight: Font.Normal; line: 20 }
    readonly property Role caption: Role { size: 13; weight: Font.Medium; line: 22 }
    readonly property Role rowTitle: Role { size: 14; weight: Font.DemiBold; line: 22 }
    readonly property Role button: Role { size: 15; weight: Font.DemiBold; line: 24 }
    readonly property Role section: Role { size: 17; weight: Font.Bold; line: 28 }
    readonly property Role sheetTitle: Role { size: 20; weight: Font.Bold; line: 32 }
    readonly property Role screenTitle: Role { size: 22; weight: Font.Bold; line: 34 }
    readonly property Role wordmark: Role { size: 26; weight: Font.Black; line: 38 }
    readonly property Role libraryTitle: Role { size: 26; weight: Font.ExtraBold; line: 38 }
    readonly property Role wideTitle: Role { size: 28; weight: Font.Bold; line: 44 }

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

    // Widths of the window at which the layout changes.
    readonly property int mediumFrom: 640
    readonly property int wideFrom: 1100

    function white(opacity: real): color {
        return Qt.rgba(1, 1, 1, opacity)
    }
    function black(opacity: real): color {
        return Qt.rgba(0, 0, 0, opacity)
    }
}
