import QtQuick
import QtQml.Models
import Navorin

FocusScope {
    id: screen

    required property real margin
    readonly property HomeViewState home: HomeViewState {
        onDetailRequested: station => screen.detailRequested(station)
        onRecognitionRequested: screen.showShazam()
    }

    signal detailRequested(station: var)

    readonly property real spacing: 14
    readonly property int columns: Math.max(1, Math.floor((width - 2 * margin + spacing) / (155 + spacing)))
    readonly property real pull: Math.max(0, -grid.verticalOvershoot)
    readonly property real pullToRefresh: 72

    // The search of SoundCloud is to lie upon this screen.
    signal searchRequested

    // Who signs in or out sees the sheet close, and not turn into the other.
    function showAccount() {
        sheet.present(home.isSignedIn ? accountSheet : loginSheet)
    }

    function showShazam() {
        shazamSheet.present(shazamView)
    }

    Component.onCompleted: if (home.opensAccountAtStart) showAccount()

    // When what is to show the other screen is complete as well.
    Timer {
        interval: 0
        running: screen.home.detailAtStart !== undefined
        onTriggered: screen.detailRequested(screen.home.detailAtStart)
    }

    Sheet { id: sheet }
    Component {
        id: loginSheet
        LoginSheet { onCloseRequested: sheet.close() }
    }
    Component {
        id: accountSheet
        AccountSheet { onCloseRequested: sheet.close() }
    }
    // Of its own: a request from outside may come while the other is open.
    Sheet { id: shazamSheet }
    Component {
        id: shazamView
        ShazamView { onCloseRequested: shazamSheet.close() }
    }
    Shortcut {
        sequences: ["F5", "Ctrl+R"]
        onActivated: screen.home.refresh()
    }

    // Beside the grid, not in it: what can take the focus in here is not part of the grid's own walk.
    Item {
        id: head
        z: 1
        y: grid.originY - grid.contentY
        width: parent.width
        height: chips.y + chips.height + 20

        HomeHeader {
            id: header
            home: screen.home
            x: screen.margin
            y: 12
            onShazamRequested: screen.showShazam()
            onSearchRequested: screen.searchRequested()
            onAccountRequested: screen.showAccount()
            width: parent.width - 2 * screen.margin
        }
        CategoryChips {
            id: chips
            home: screen.home
            anchors.top: header.bottom
            anchors.topMargin: 16
            x: screen.margin
            width: parent.width - 2 * screen.margin
        }
    }

    // A card that waits to be used again is nobody's to see, point at or read out; the view itself does not say so.
    DelegateModel {
        id: cards

        model: screen.home.stations
        onItemPooled: (index, item) => item.visible = false
        onItemReused: (index, item) => {
            item.visible = true
            item.opacity = 1
            item.scale = 1
        }
        delegate: FocusScope {
            id: cell

            required property int index
            required property string name
            required property string artworkAddress
            required property string trackLine
            required property bool isSelected

            width: grid.cellWidth
            height: grid.cellHeight

            StationCardView {
                x: Math.round(cell.x + grid.inset) - cell.x
                width: Math.floor(cell.width - 2 * grid.inset)
                height: width + Theme.captionHeight
                focus: true
                name: cell.name
                artworkAddress: cell.artworkAddress
                trackLine: cell.trackLine
                isSelected: cell.isSelected
                isPlaying: screen.home.isPlaying
                onClicked: {
                    grid.currentIndex = cell.index
                    screen.home.openCard(cell.index)
                }
            }
        }
    }
    GridView {
        id: grid

        // Half a gap on both sides of each cell; rounded in the cell, so that covers meet the pixels.
        readonly property real inset: screen.spacing / 2
        // Then it stays there when what stands above the cards changes its height.
        property bool isAtTop: true

        // Clear of the mini player, and with the header when it is the first row.
        function keepInSight() {
            if (!currentItem)
                return
            const above = currentIndex < screen.columns ? head.height : 16
            const lowest = currentItem.y - above
            const highest = currentItem.y + cellHeight + footerItem.height - height
            const target = Math.min(lowest, Math.max(highest, contentY))
            scroll.to = target
            scroll.restart()
        }

        x: screen.margin - inset
        width: parent.width - 2 * x
        height: parent.height
        cellWidth: width / screen.columns
        cellHeight: Math.floor(cellWidth) + Theme.captionHeight
        model: screen.home.content === HomeViewState.Grid ? cards : null
        reuseItems: true
        cacheBuffer: 2 * cellHeight
        activeFocusOnTab: true
        keyNavigationEnabled: true
        highlightFollowsCurrentItem: false
        onCurrentItemChanged: if (Stage.keyboardSteers) keepInSight()
        onContentYChanged: isAtTop = contentY <= originY + 1
        onOriginYChanged: if (isAtTop && !moving) contentY = originY
        boundsBehavior: Flickable.DragOverBounds
        clip: false
        Accessible.role: Accessible.List
        Accessible.name: "ایستگاه‌ها"
        onDragEnded: if (screen.pull >= screen.pullToRefresh) screen.home.refresh()

        header: Item { width: 1; height: head.height }
        footer: Item {
            width: 1
            height: screen.home.hasStation ? Theme.miniSpace : 24
        }
        add: Transition {
            GridSpring { property: "opacity"; from: 0; to: 1 }
            GridSpring { property: "scale"; from: 0.9; to: 1 }
        }
        remove: Transition {
            NumberAnimation { property: "opacity"; to: 0; duration: 160; easing.type: Easing.OutQuad }
        }
        // Whoever is pushed aside may not have arrived yet.
        displaced: Transition {
            GridSpring { properties: "x,y" }
            GridSpring { properties: "opacity,scale"; to: 1 }
        }
        move: displaced

        component GridSpring: SpringMotion {
            response: 0.5
        }

        NumberAnimation {
            id: scroll
            target: grid
            property: "contentY"
            duration: Theme.motionTime(180)
            easing.type: Easing.OutQuad
        }
        NumberAnimation on scale {
            from: 0.96
            to: 1
            duration: Theme.motionTime(350)
            easing.type: Easing.OutQuad
        }
    }

    Loader {
        anchors.centerIn: parent
        active: screen.home.content === HomeViewState.Loading

        sourceComponent: Column {
            spacing: 12

            Spinner {
                anchors.horizontalCenter: parent.horizontalCenter
                size: 32
            }
            NText {
                text: "در حال دریافت ایستگاهها…"
                role: Theme.caption
                color: Theme.white(0.55)
                Accessible.role: Accessible.StaticText
                Accessible.name: text
            }
        }
    }
    Loader {
        anchors.centerIn: parent
        width: parent.width - 2 * screen.margin
        active: screen.home.content === HomeViewState.Error

        sourceComponent: EmptyState {
            symbol: "wifi.exclamationmark"
            message: screen.home.errorMessage

            NButton {
                text: "تلاش دوباره"
                symbol: "arrow.counterclockwise"
                isPrimary: true
                onClicked: screen.home.refresh()
            }
        }
    }

    // Comes down with the pull, and stays while the catalogue is fetched.
    Rectangle {
        anchors.horizontalCenter: parent.horizontalCenter
        z: 2
        y: screen.home.isRefreshing ? 12 : Math.min(screen.pull, screen.pullToRefresh) - height
        width: 36
        height: 36
        radius: 18
        color: Theme.sheet
        border.width: 1
        border.color: Theme.hairline
        opacity: screen.home.isRefreshing ? 1 : Math.min(1, screen.pull / screen.pullToRefresh)
        visible: opacity > 0

        Behavior on opacity { NumberAnimation { duration: Theme.hoverTime } }

        Spinner {
            anchors.centerIn: parent
            size: 20
            running: parent.visible
        }
    }
}
