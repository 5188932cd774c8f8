import QtQuick
import Navorin

// What is kept on this machine for playing without a network, and what is on its way there.
ScreenPage {
    id: screen

    readonly property OfflineLibraryViewState library: OfflineLibraryViewState {}

    title: "دانلودهای آفلاین"
    tools: RoundButton {
        visible: screen.library.hasEntries
        symbol: "trash"
        text: "حذف همه"
        onClicked: confirmClear.ask()
    }

    ConfirmDialog {
        id: confirmClear
        title: "همه دانلودها حذف شوند؟"
        message: "فایلهای ذخیرهشده از حافظه گوشی پاک میشوند."
        confirmText: "حذف همه"
        cancelText: "انصراف"
        onConfirmed: screen.library.removeAll()
    }
    NMenu {
        id: menu

        property string key

        NMenuItem {
            text: "حذف دانلود"
            symbol: "trash"
            isDestructive: true
            onTriggered: screen.library.remove(menu.key)
        }
    }

    ListView {
        id: list

        // What comes above the first row is seen by whoever looks at the beginning.
        property bool restsAtTop: true

        anchors.fill: parent
        visible: !screen.library.isEmpty
        model: screen.library.entries
        spacing: 6
        clip: true
        focus: true
        activeFocusOnTab: true
        keyNavigationEnabled: true
        highlightFollowsCurrentItem: Stage.keyboardSteers
        highlightMoveDuration: Theme.motionTime(180)
        boundsBehavior: Flickable.StopAtBounds
        Accessible.role: Accessible.List
        Accessible.name: screen.title
        onContentYChanged: restsAtTop = contentY <= originY + 1

        header: Column {
            width: list.width
            onHeightChanged: if (list.restsAtTop) Qt.callLater(list.positionViewAtBeginning)
            spacing: 6
            bottomPadding: 12

            NText {
                x: screen.margin
                width: list.width - 2 * x
                text: screen.library.summary
                role: Theme.caption
                color: Theme.white(0.6)
                Accessible.role: Accessible.StaticText
                Accessible.name: text
            }
            Repeater {
                model: screen.library.downloads

                OfflineDownloadRow {
                    required property string key

                    x: screen.margin
                    width: list.width - 2 * x
                    onCancelRequested: screen.library.cancel(key)
                }
            }
        }
        footer: Item {
            width: 1
            height: screen.library.hasStation ? Theme.miniSpace : 24
        }
        delegate: FocusScope {
            id: cell

            required property int index
            required property string title
            required property string line
            required property string artworkAddress
            required property string note

            width: list.width
            height: Theme.trackHeight

            OfflineEntryRow {
                x: screen.margin
                width: list.width - 2 * x
                height: parent.height
                focus: true
                number: cell.index + 1
                title: cell.title
                artist: cell.line
                artworkAddress: cell.artworkAddress
                duration: cell.note
                onClicked: {
                    list.currentIndex = cell.index
                    screen.library.play(cell.index)
                }
                onMenuRequested: {
                    menu.key = screen.library.keyAt(cell.index)
                    menu.popup()
                }
            }
        }
        remove: Transition { NumberAnimation { property: "opacity"; to: 0; duration: 160; easing.type: Easing.OutQuad } }
        displaced: Transition {
            SpringMotion { property: "y" }
            NumberAnimation { property: "opacity"; to: 1; duration: 100 }
        }
    }
    Loader {
        anchors.horizontalCenter: parent.horizontalCenter
        y: Math.round((parent.height - height) / 2 - 36)
        width: Math.min(360, parent.width - 2 * screen.margin)
        active: screen.library.isEmpty

        sourceComponent: EmptyState {
            symbol: "arrow.down.circle"
            title: "هنوز چیزی ذخیره نکردی"
            message: "توی پلیر یا لیست پلیلیستها روی دکمه دانلود بزن تا آهنگها برای پخش آفلاین ذخیره بشن"
        }
    }
}
