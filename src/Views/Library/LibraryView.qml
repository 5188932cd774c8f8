import QtQuick
import Navorin

FocusScope {
    id: screen

    required property real margin
    // What the offline card opens; without it there is no card.
    property Component offlineScreen: null
    readonly property LibraryViewState library: LibraryViewState {}

    readonly property bool isStacked: width < 540
    readonly property real spacing: 14
    readonly property int columns: Math.max(1, Math.floor((width - 2 * margin + spacing) / (155 + spacing)))
    // The playlist whose menu is open.
    property int menuRow: -1

    // A screen that is to lie upon this one.
    signal screenRequested(screen: Component, properties: var)

    // Who signs in or out sees the sheet close, and not turn into the other.
    function showAccount() {
        sheet.present(library.isSignedIn ? accountSheet : loginSheet)
    }
    function openMenu(row: int, card: Item, at: point) {
        menuRow = row
        menu.popup(card, at.x, at.y)
    }
    // Brings what was found for a link or a query up from below the edge.
    function showSections() {
        const end = grid.originY + grid.contentHeight - grid.height
        keeper.to = Math.max(grid.contentY, Math.min(grid.footerItem.y - 8, end))
        keeper.restart()
    }
    function askToDelete(row: int) {
        library.prepareDelete(row)
        question.ask()
    }

    onVisibleChanged: if (visible) library.appear()
    Component.onCompleted: library.appear()

    AdBannerViewState { id: ads }
    Sheet { id: sheet }
    Component {
        id: loginSheet
        LoginSheet { onCloseRequested: sheet.close() }
    }
    Component {
        id: accountSheet
        AccountSheet { onCloseRequested: sheet.close() }
    }
    Component {
        id: detailScreen
        PlaylistDetailView {}
    }
    NMenu {
        id: menu

        NMenuItem {
            text: "حذف پلیلیست"
            symbol: "trash"
            isDestructive: true
            onTriggered: screen.askToDelete(screen.menuRow)
        }
    }
    ConfirmDialog {
        id: question
        title: "حذف پلیلیست؟"
        message: "این عمل قابل بازگشت نیست."
        confirmText: "حذف"
        onConfirmed: screen.library.deletePlaylist()
    }
    Shortcut {
        sequences: ["F5", "Ctrl+R"]
        enabled: screen.visible
        onActivated: screen.library.refresh()
    }

    // Beside the grid, not in it: what can take the focus in here is not part of the grid's own walk.
    LibraryHead {
        id: head
        z: 1
        x: screen.margin
        y: grid.originY - grid.contentY
        width: parent.width - 2 * screen.margin
        library: screen.library
        isStacked: screen.isStacked
        offersOffline: screen.offlineScreen !== null
        onAccountRequested: screen.showAccount()
        onOfflineRequested: screen.screenRequested(screen.offlineScreen, {})
    }
    GridView {
        id: grid

        // Half a gap on both sides of each cell; rounded in the cell, so that covers meet the pixels.
        readonly property real inset: screen.spacing / 2
        // Then it stays there when what stands above the cards changes its height.
        property bool isAtTop: true

        x: screen.margin - inset
        width: parent.width - 2 * x
        height: parent.height
        cellWidth: width / screen.columns
        cellHeight: Math.floor(cellWidth) + Theme.captionHeight
        model: screen.library.playlists
        reuseItems: true
        cacheBuffer: 2 * cellHeight
        activeFocusOnTab: true
        keyNavigationEnabled: true
        highlightFollowsCurrentItem: false
        boundsBehavior: Flickable.DragOverBounds
        onContentYChanged: isAtTop = contentY <= originY + 1
        onOriginYChanged: if (isAtTop && !moving) contentY = originY
        Accessible.role: Accessible.List
        Accessible.name: "پلیلیستهای من"
        onCurrentItemChanged: if (currentItem && Stage.keyboardSteers) {
            keeper.show(currentItem, currentIndex < screen.columns ? head.height + 16 : 16)
        }
        onDragEnded: if (disc.isPulledFar) screen.library.refresh()

        header: Item { width: 1; height: head.height + 16 }
        footer: Item { width: 1; height: sections.height + banner.height + 40 + (screen.library.hasStation ? Theme.miniSpace : 24) }

        delegate: FocusScope {
            id: cell

            required property int index
            required property string title
            required property string line
            required property string artworkAddress

            width: grid.cellWidth
            height: grid.cellHeight
            GridView.onPooled: visible = false
            GridView.onReused: visible = true

            // Cards come one after the other, so that none of them holds up a frame.
            Loader {
                x: Math.round(cell.x + grid.inset) - cell.x
                width: Math.floor(cell.width - 2 * grid.inset)
                height: width + Theme.captionHeight
                focus: true
                asynchronous: true
                enabled: status === Loader.Ready // the Tab key finds nothing in it that is half made
                onLoaded: item.focus = true
                sourceComponent: PlaylistCard {
                    id: card
                    title: cell.title
                    line: cell.line
                    artworkAddress: cell.artworkAddress
                    isCurrent: cell.GridView.isCurrentItem
                    onClicked: {
                        grid.currentIndex = cell.index
                        screen.screenRequested(detailScreen, {summary: screen.library.playlistAt(cell.index)})
                    }
                    onMenuRequested: at => screen.openMenu(cell.index, card, at)
                    onDeleteRequested: screen.askToDelete(cell.index)
                }
            }
        }

        KeepInSight {
            id: keeper
            view: grid
            below: screen.library.hasStation ? Theme.miniSpace : 24
        }
    }
    LibrarySections {
        id: sections
        z: 1
        x: screen.margin
        y: grid.footerItem === null ? 0 : grid.footerItem.y - grid.contentY + 12
        width: parent.width - 2 * screen.margin
        library: screen.library
        isStacked: screen.isStacked
        onFound: settling.restart()
    }
    Loader {
        id: banner
        active: ads.isConfigured
        z: 1
        x: Math.round((parent.width - width) / 2)
        y: sections.y + sections.height + 14
        width: Math.min(parent.width - 2 * screen.margin, 928)
        height: active ? 140 + 14 : 0
        sourceComponent: Item {
            AdBannerView {
                width: parent.width
                height: 140
            }
        }
    }
    // What was found has its height only when everything is laid out.
    Timer {
        id: settling
        interval: 0
        onTriggered: screen.showSections()
    }
    RefreshDisc {
        id: disc
        pull: grid.dragging ? Math.max(0, -grid.verticalOvershoot) : 0
        isRefreshing: screen.library.isRefreshing
    }
}
