import QtQuick
import Navorin

// Music from elsewhere: a link of Spotify, and a search of SoundCloud. Side by side where there is room.
Grid {
    id: sections

    required property LibraryViewState library
    property bool isStacked: false
    readonly property real share: isStacked ? width : (width - spacing) / 2

    // An answer has come.
    signal found

    columns: isStacked ? 1 : 2
    spacing: 14

    component Section: Rectangle {
        id: section

        property string title
        property string symbol
        property color tone
        default property alias content: column.data

        width: sections.share
        height: column.height + 32
        radius: Theme.panelRadius
        color: Theme.panelFill
        border.width: 1
        border.color: Theme.hairline
        Accessible.role: Accessible.Grouping
        Accessible.name: title

        Column {
            id: column
            x: 16
            y: 16
            width: parent.width - 2 * x
            spacing: 12

            Row {
                width: parent.width
                spacing: 10

                Icon {
                    anchors.verticalCenter: parent.verticalCenter
                    symbol: section.symbol
                    size: 22
                    color: section.tone
                }
                NText {
                    width: parent.width - 32
                    text: section.title
                    role: Theme.section
                    Accessible.role: Accessible.Heading
                    Accessible.name: text
                }
            }
        }
    }

    Section {
        title: "ایمپورت از اسپاتیفای"
        symbol: "arrow.down.circle"
        tone: Theme.success

        SearchField {
            width: parent.width
            placeholderText: "لینک پلیلیست اسپاتیفای…"
            buttonSymbol: "magnifyingglass"
            buttonName: "پیش‌نمایش"
            inputMethodHints: Qt.ImhUrlCharactersOnly | Qt.ImhNoAutoUppercase
            text: sections.library.spotify.url
            canSubmit: sections.library.spotify.canResolve
            isWaiting: sections.library.spotify.isLoading
            onTextEdited: sections.library.spotify.url = text
            onSubmitted: sections.library.spotify.resolve()
        }
        SpotifyPreview {
            width: parent.width
            spotify: sections.library.spotify
            visible: spotify.hasEntity
            onVisibleChanged: if (visible) sections.found()
        }
        Notice {
            width: parent.width
            text: sections.library.spotify.message
            isFailure: sections.library.spotify.messageIsFailure
        }
    }
    Section {
        title: "جستجوی ساندکلود"
        symbol: "magnifyingglass"
        tone: Theme.warning

        SearchField {
            width: parent.width
            placeholderText: "نام آهنگ یا هنرمند…"
            buttonSymbol: "arrow.right.circle.fill"
            buttonName: "جستجو"
            pointsForward: true
            text: sections.library.soundCloud.query
            isWaiting: sections.library.soundCloud.isLoading
            onTextEdited: sections.library.soundCloud.query = text
            onIsWaitingChanged: if (!isWaiting) sections.found()
            onSubmitted: sections.library.soundCloud.search()
        }
        Notice {
            width: parent.width
            text: sections.library.soundCloud.errorMessage
            isFailure: true
        }
        NText {
            width: parent.width
            text: "نتیجهای پیدا نشد"
            role: Theme.caption
            color: Theme.white(0.6)
            visible: sections.library.soundCloud.foundNothingForQuery
            Accessible.role: Accessible.AlertMessage
            Accessible.name: text
        }
        // As high as a few results; the others scroll within.
        ListView {
            id: results

            width: parent.width
            height: Math.min(contentHeight, 6 * (Theme.resultHeight + spacing) - spacing)
            visible: count > 0
            clip: contentHeight > height
            interactive: contentHeight > height
            boundsBehavior: Flickable.StopAtBounds
            spacing: 6
            reuseItems: true
            activeFocusOnTab: true
            keyNavigationEnabled: true
            model: sections.library.soundCloud.results
            Accessible.role: Accessible.List
            Accessible.name: "جستجوی ساندکلود"

            delegate: FocusScope {
                id: cell

                required property int index
                required property string title
                required property string line
                required property string artworkAddress
                required property bool isSelected

                width: results.width
                height: Theme.resultHeight
                ListView.onPooled: visible = false
                ListView.onReused: visible = true

                StationRow {
                    anchors.fill: parent
                    focus: true
                    title: cell.title
                    line: cell.line
                    artworkAddress: cell.artworkAddress
                    isSelected: cell.isSelected
                    isPlaying: sections.library.soundCloud.isPlaying
                    onClicked: {
                        results.currentIndex = cell.index
                        sections.library.soundCloud.play(cell.index)
                    }
                }
            }
        }
    }
}
