import QtQuick
import Navorin

ScreenPage {
    id: page

    required property var summary
    readonly property PlaylistDetailViewState playlist: PlaylistDetailViewState {
        summary: page.summary
        onFinished: page.backRequested()
    }
    // The track whose menu is open.
    property int menuRow: -1

    function openMenu(row: int, item: Item, at: point) {
        menuRow = row
        trackMenu.popup(item, at.x, at.y)
    }
    function askToDelete(row: int) {
        playlist.prepareTrackDelete(row)
        trackQuestion.ask()
    }

    // The head has it in large letters while it can be seen.
    title: list.contentY - list.originY > 80 ? playlist.title : ""
    Accessible.name: playlist.title
    onVisibleChanged: if (visible) playlist.load()
    Component.onCompleted: if (!playlist.isLoading) playlist.load()

    tools: RoundButton {
        id: more
        text: "گزینهها"
        symbol: "ellipsis.circle"
        enabled: !page.playlist.isWriting
        onClicked: menu.popup(more, 0, height + 6)
    }
    NMenu {
        id: menu

        NMenuItem {
            text: "ویرایش پلیلیست"
            symbol: "pencil"
            onTriggered: page.playlist.prepareEdit()
        }
        NMenuItem {
            text: "حذف پلیلیست"
            symbol: "trash"
            isDestructive: true
            onTriggered: question.ask()
        }
    }
    NMenu {
        id: trackMenu

        NMenuItem {
            text: "ویرایش آهنگ"
            symbol: "pencil"
            onTriggered: page.playlist.prepareTrackEdit(page.menuRow)
        }
        NMenuItem {
            text: "حذف آهنگ"
            symbol: "trash"
            isDestructive: true
            onTriggered: page.askToDelete(page.menuRow)
        }
    }
    EditDialog {
        title: "ویرایش پلیلیست"
        message: "نام و توضیحات پلیلیست را ویرایش کنید."
        firstLabel: "نام پلیلیست"
        secondLabel: "توضیحات"
        firstText: page.playlist.editTitle
        secondText: page.playlist.editDesc
        errorMessage: page.playlist.error
        isWaiting: page.playlist.isWriting
        isShown: page.playlist.showEditSheet
        onDismissed: page.playlist.showEditSheet = false
        onSaved: (first, second) => {
            page.playlist.editTitle = first
            page.playlist.editDesc = second
            page.playlist.saveEdit()
        }
    }
    EditDialog {
        title: "ویرایش آهنگ"
        firstLabel: "عنوان"
        secondLabel: "هنرمند"
        secondSymbol: "person"
        firstText: page.playlist.editTrackTitle
        secondText: page.playlist.editTrackArtist
        errorMessage: page.playlist.error
        isWaiting: page.playlist.isWriting
        isShown: page.playlist.showEditTrackSheet
        onDismissed: page.playlist.showEditTrackSheet = false
        onSaved: (first, second) => {
            page.playlist.editTrackTitle = first
            page.playlist.editTrackArtist = second
            page.playlist.saveTrackEdit()
        }
    }
    ConfirmDialog {
        id: question
        title: "حذف پلیلیست؟"
        message: "این عمل قابل بازگشت نیست."
        confirmText: "حذف"
        onConfirmed: page.playlist.deletePlaylist()
    }
    ConfirmDialog {
        id: trackQuestion
        title: "حذف آهنگ؟"
        message: "این عمل قابل بازگشت نیست."
        confirmText: "حذف"
        onConfirmed: page.playlist.deleteTrack()
    }
    Shortcut {
        sequences: ["F5", "Ctrl+R"]
        enabled: page.visible
        onActivated: page.playlist.load()
    }
    Shortcut {
        sequence: "F2"
        enabled: page.visible && !list.activeFocus
        onActivated: page.playlist.prepareEdit()
    }

    Item {
        id: clip
        anchors.fill: parent
        clip: true

        PlaylistHead {
            id: head
            z: 1
            x: page.margin
            y: list.originY - list.contentY
            width: parent.width - 2 * page.margin
            playlist: page.playlist
        }
        ListView {
            id: list

            // Then it stays there when what stands above the tracks changes its height.
            property bool isAtTop: true

            anchors.fill: parent
            model: page.playlist.tracks
            spacing: 6
            reuseItems: true
            cacheBuffer: 400
            focus: true
            activeFocusOnTab: true
            keyNavigationEnabled: true
            highlightFollowsCurrentItem: false
            boundsBehavior: Flickable.DragOverBounds
            onContentYChanged: isAtTop = contentY <= originY + 1
            onOriginYChanged: if (isAtTop && !moving) contentY = originY
            Accessible.role: Accessible.List
            Accessible.name: page.playlist.title
            onCurrentItemChanged: if (currentItem && Stage.keyboardSteers) {
                keeper.show(currentItem, currentIndex === 0 ? head.height : 8)
            }
            onDragEnded: if (disc.isPulledFar) page.playlist.load()

            header: Item { width: 1; height: head.height }
            footer: Item { width: 1; height: page.playlist.hasStation ? Theme.miniSpace : 24 }

            delegate: FocusScope {
                id: cell

                required property int index
                required property string title
                required property string line
                required property string artworkAddress
                required property string note
                required property bool isSelected

                width: list.width
                height: Theme.trackHeight
                ListView.onPooled: visible = false
                ListView.onReused: visible = true

                // Rows come one after the other, so that none of them holds up a frame.
                Loader {
                    x: page.margin
                    width: list.width - 2 * x
                    height: parent.height
                    focus: true
                    asynchronous: true
                    enabled: status === Loader.Ready // the Tab key finds nothing in it that is half made
                    onLoaded: item.focus = true
                    sourceComponent: TrackRow {
                        id: row
                        playlist: page.playlist
                        number: cell.index + 1
                        title: cell.title
                        line: cell.line
                        artworkAddress: cell.artworkAddress
                        note: cell.note
                        isSelected: cell.isSelected
                        isPlaying: page.playlist.isPlaying
                        isCurrent: cell.ListView.isCurrentItem
                        onClicked: {
                            list.currentIndex = cell.index
                            page.playlist.play(cell.index)
                        }
                        onMenuRequested: at => page.openMenu(cell.index, row, at)
                        onEditRequested: page.playlist.prepareTrackEdit(cell.index)
                        onDeleteRequested: page.askToDelete(cell.index)
                    }
                }
            }

            KeepInSight {
                id: keeper
                view: list
                below: page.playlist.hasStation ? Theme.miniSpace : 24
            }
        }
        Spinner {
            anchors.centerIn: parent
            size: 32
            running: page.playlist.isLoading && !page.playlist.hasTracks && !page.playlist.isEmpty
        }
        Loader {
            anchors.centerIn: parent
            width: parent.width - 2 * page.margin
            active: page.playlist.canRetry || page.playlist.isEmpty

            sourceComponent: EmptyState {
                symbol: page.playlist.canRetry ? "wifi.exclamationmark" : "music.note.list"
                message: page.playlist.canRetry ? page.playlist.error : "هنوز آهنگی در این پلی‌لیست نیست."

                NButton {
                    text: "تلاش دوباره"
                    symbol: "arrow.counterclockwise"
                    isPrimary: true
                    visible: page.playlist.canRetry
                    onClicked: page.playlist.load()
                }
            }
        }
        RefreshDisc {
            id: disc
            pull: list.dragging ? Math.max(0, -list.verticalOvershoot) : 0
            isRefreshing: page.playlist.isLoading && page.playlist.hasTracks && pull > 0
        }
    }
}
