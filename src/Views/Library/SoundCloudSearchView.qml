import QtQuick
import Navorin

ScreenPage {
    id: page

    readonly property SoundCloudSearchViewState soundCloud: SoundCloudSearchViewState {}

    title: "جستجوی ساندکلود"

    SearchField {
        id: field
        x: page.margin
        width: parent.width - 2 * x
        focus: true
        placeholderText: "نام آهنگ یا هنرمند…"
        buttonSymbol: "magnifyingglass"
        buttonName: "جستجو"
        text: page.soundCloud.query
        isWaiting: page.soundCloud.isLoading
        onTextEdited: page.soundCloud.query = text
        onSubmitted: page.soundCloud.search()
        Keys.onDownPressed: if (list.visible) list.forceActiveFocus()
    }
    Item {
        id: below
        anchors.top: field.bottom
        anchors.topMargin: 16
        anchors.bottom: parent.bottom
        width: parent.width
        clip: true

        ListView {
            id: list

            anchors.fill: parent
            visible: count > 0 && !page.soundCloud.isLoading
            model: page.soundCloud.results
            spacing: 6
            reuseItems: true
            cacheBuffer: 400
            activeFocusOnTab: true
            keyNavigationEnabled: true
            highlightFollowsCurrentItem: false
            Accessible.role: Accessible.List
            Accessible.name: page.title
            onCurrentItemChanged: if (currentItem && Stage.keyboardSteers) keeper.show(currentItem, 8)

            footer: Item { width: 1; height: page.soundCloud.hasStation ? Theme.miniSpace : 24 }

            delegate: FocusScope {
                id: cell

                required property int index
                required property string title
                required property string line
                required property string artworkAddress
                required property bool isSelected

                width: list.width
                height: Theme.grown(64, 42)
                ListView.onPooled: visible = false
                ListView.onReused: visible = true

                StationRow {
                    x: page.margin
                    width: list.width - 2 * x
                    height: parent.height
                    focus: true
                    title: cell.title
                    line: cell.line
                    artworkAddress: cell.artworkAddress
                    isSelected: cell.isSelected
                    isPlaying: page.soundCloud.isPlaying
                    actionSymbol: "play.fill"
                    onClicked: {
                        list.currentIndex = cell.index
                        page.soundCloud.play(cell.index)
                    }
                }
            }

            KeepInSight {
                id: keeper
                view: list
                below: page.soundCloud.hasStation ? Theme.miniSpace : 24
            }
        }
        Spinner {
            anchors.centerIn: parent
            size: 32
            running: page.soundCloud.isLoading
        }
        Loader {
            anchors.centerIn: parent
            width: parent.width - 2 * page.margin
            active: !page.soundCloud.isLoading
                    && (page.soundCloud.errorMessage !== "" || !page.soundCloud.searched || page.soundCloud.foundNothing)

            sourceComponent: EmptyState {
                symbol: page.soundCloud.errorMessage !== "" ? "wifi.exclamationmark" : "magnifyingglass"
                message: page.soundCloud.errorMessage !== "" ? page.soundCloud.errorMessage
                         : page.soundCloud.searched ? "نتیجهای پیدا نشد" : "یه آهنگ یا هنرمند رو سرچ کن"
            }
        }
    }
}
