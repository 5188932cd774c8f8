import QtQuick
import QtQuick.Controls
import Navorin

// The lines, the sung one in the middle. Where the window is wider than a line should be, they stand in a column.
ListView {
    id: list

    required property LyricsSheetState sheet
    readonly property real columnWidth: Math.min(width - 48, 560)

    // 0 without translations, 1 with them.
    property real translated: sheet.showTranslation ? 1 : 0
    // What keeps its place on the screen while the rows above it change their heights.
    property Item anchorRow: null
    property real anchorPlace: 0

    function keepAnchor() {
        anchorRow = itemAtIndex(sheet.activeIndex) ?? itemAt(width / 2, contentY + height / 2)
        anchorPlace = anchorRow === null ? 0 : anchorRow.y - contentY
    }
    function clamped(position: real): real {
        return Math.max(originY, Math.min(position, originY + contentHeight - height))
    }

    model: sheet.lines
    spacing: 20
    focus: true
    activeFocusOnTab: true
    clip: true
    cacheBuffer: 400
    boundsBehavior: Flickable.StopAtBounds
    keyNavigationEnabled: true
    highlightFollowsCurrentItem: false
    currentIndex: -1
    Accessible.role: Accessible.List
    Accessible.name: "متن ترانه"
    Keys.onReturnPressed: sheet.seekTo(currentIndex)
    Keys.onEnterPressed: sheet.seekTo(currentIndex)
    onCurrentIndexChanged: positionViewAtIndex(currentIndex, ListView.Contain)
    onMovementStarted: centring.stop()
    onTranslatedChanged: if (anchorRow !== null) contentY = clamped(anchorRow.y - anchorPlace)
    Component.onCompleted: centring.show(sheet.activeIndex)

    header: Item { width: 1; height: 140 }
    footer: Item { width: 1; height: 240 }
    delegate: LyricsRow {
        x: Math.round((list.width - width) / 2)
        width: list.columnWidth
        isActive: index === list.sheet.activeIndex
        canSeek: list.sheet.canSeek
        translated: list.translated
        onClicked: list.sheet.seekTo(index)
    }
    ScrollBar.vertical: ScrollBar {
        policy: ScrollBar.AsNeeded
        Accessible.ignored: true // the list scrolls by its own keys
    }

    Behavior on translated { SpringMotion { response: 0.5; damping: 0.85 } }

    Connections {
        target: list.sheet
        function onActiveIndexChanged() { centring.show(list.sheet.activeIndex) }
        function onShowTranslationChanged() { list.keepAnchor() }
    }

    // Follows its row, whose place may change while it is on the way there.
    NumberAnimation {
        id: centring

        property int row: -1
        property real start: 0
        property real progress: 1

        function show(index: int) {
            if (index < 0)
                return
            stop()
            bringNear(index)
            row = index
            start = list.contentY
            progress = 0 // also where the whole way takes no time
            restart()
        }
        // A row far away is not laid out; from a page away the rest of the way can be shown.
        function bringNear(index: int) {
            if (list.itemAtIndex(index) !== null)
                return
            const goesDown = index > list.indexAt(list.width / 2, list.contentY + list.height / 2)
            list.positionViewAtIndex(index, ListView.Center)
            list.contentY = list.clamped(list.contentY + (goesDown ? -list.height : list.height) / 2)
        }

        target: centring
        property: "progress"
        from: 0
        to: 1
        duration: Theme.motionTime(450)
        easing.type: Easing.InOutQuad
        onProgressChanged: {
            const item = list.itemAtIndex(row)
            if (item !== null)
                list.contentY = start + (list.clamped(item.y + (item.height - list.height) / 2) - start) * progress
        }
    }
}
