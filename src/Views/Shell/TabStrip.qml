import QtQuick
import Navorin

// The tabs: a bar at the bottom of a narrow window, a rail on the leading side of a wider one, with room for
// words beside the symbols in a wide one.
Item {
    id: strip

    required property bool isRail
    required property bool isWide
    property int current: 0
    readonly property var tabs: [
        { label: "رادیو", symbol: "dot.radiowaves.left.and.right" },
        { label: "کتابخانه", symbol: "music.note.list" }
    ]

    Accessible.role: Accessible.PageTabList
    Accessible.name: "بخش‌ها"

    Rectangle {
        anchors.fill: parent
        color: strip.isRail ? Theme.black(0.28) : Theme.background
        opacity: strip.isRail ? 1 : 0.96
    }
    Rectangle {
        anchors.right: strip.isRail ? parent.right : undefined
        width: strip.isRail ? 1 : parent.width
        height: strip.isRail ? parent.height : 1
        color: Theme.white(0.06)
    }
    Grid {
        anchors.top: parent.top
        anchors.topMargin: strip.isRail ? 20 : 0
        anchors.horizontalCenter: parent.horizontalCenter
        columns: strip.isRail ? 1 : strip.tabs.length
        spacing: strip.isRail ? (strip.isWide ? 4 : 8) : 0

        Repeater {
            model: strip.tabs

            TabStripButton {
                required property int index
                required property var modelData

                width: strip.isRail ? (strip.isWide ? strip.width - 24 : 72) : strip.width / strip.tabs.length
                height: strip.isRail ? (strip.isWide ? Theme.grown(44, 22) : Theme.grown(64, 20)) : strip.height
                isBeside: strip.isWide
                text: modelData.label
                symbol: modelData.symbol
                isSelected: strip.current === index
                onClicked: strip.current = index
            }
        }
    }
}
