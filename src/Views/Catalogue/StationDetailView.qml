import QtQuick
import Navorin

ScreenPage {
    id: page

    required property var station
    readonly property StationDetailViewState detail: StationDetailViewState {
        station: page.station
    }

    // The header of the list says it larger.
    Accessible.name: detail.title
    Component.onCompleted: detail.hydrateIfNeeded()

    Spinner {
        anchors.centerIn: parent
        size: 32
        running: page.detail.content === StationDetailViewState.Loading
    }
    // Beside the list, not in it: its button is then reached by Tab, and the arrow keys stay the list's own.
    StationHead {
        id: head
        z: 1
        y: list.originY - list.contentY
        width: parent.width
        visible: list.visible
        detail: page.detail
        margin: page.margin
    }
    ListView {
        id: list

        function openMenu(row: Item, index: int, at: point) {
            menu.row = index
            menu.popup(row, at)
        }

        anchors.fill: parent
        visible: page.detail.content === StationDetailViewState.Tracks
        focus: visible
        model: visible ? page.detail.tracks : null
        spacing: 6
        reuseItems: true
        cacheBuffer: 400
        activeFocusOnTab: true
        keyNavigationEnabled: true
        highlightFollowsCurrentItem: true
        highlightMoveDuration: Theme.motionTime(120)
        preferredHighlightBegin: 16
        preferredHighlightEnd: height - footerItem.height
        highlightRangeMode: ListView.ApplyRange
        boundsBehavior: Flickable.DragOverBounds
        Accessible.role: Accessible.List
        Accessible.name: "آهنگ‌ها"

        header: Item { width: 1; height: head.height }
        footer: Item {
            width: 1
            height: page.detail.hasStation ? Theme.grown(100, 46) : 24
        }
        delegate: StationTrackRow {
            required property int index

            x: page.margin
            width: list.width - 2 * page.margin
            isPlaying: page.detail.isPlaying
            tone: page.detail.themeColor
            onClicked: {
                list.currentIndex = index
                page.detail.play(index)
            }
            onMenuRequested: at => list.openMenu(this, index, at)
        }

        NMenu {
            id: menu

            property int row: -1
            property bool isDownloaded: false

            onAboutToShow: isDownloaded = page.detail.isDownloaded(row)

            NMenuItem {
                text: menu.isDownloaded ? "حذف دانلود" : "دانلود آفلاین"
                symbol: menu.isDownloaded ? "trash" : "arrow.down.circle"
                isDestructive: menu.isDownloaded
                onTriggered: menu.isDownloaded ? page.detail.removeDownload(menu.row) : page.detail.download(menu.row)
            }
        }
    }
    Loader {
        anchors.centerIn: parent
        width: parent.width - 2 * page.margin
        active: page.detail.content === StationDetailViewState.Failed

        sourceComponent: EmptyState {
            symbol: "wifi.exclamationmark"
            message: "دریافت لیست آهنگها ناموفق بود"

            NButton {
                text: "تلاش دوباره"
                symbol: "arrow.counterclockwise"
                isPrimary: true
                onClicked: page.detail.hydrateIfNeeded()
            }
        }
    }
    Loader {
        anchors.centerIn: parent
        width: parent.width - 2 * page.margin
        active: page.detail.content === StationDetailViewState.Live

        sourceComponent: EmptyState {
            symbol: "dot.radiowaves.left.and.right"
            symbolSize: 42
            message: "این ایستگاه پخش زنده است"

            NButton {
                text: "پخش زنده"
                symbol: "play.fill"
                isPrimary: true
                onClicked: page.detail.play(0)
            }
        }
    }
}
