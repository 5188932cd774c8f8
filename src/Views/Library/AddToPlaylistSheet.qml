import QtQuick
import Navorin

SheetPage {
    id: sheet

    readonly property AddToPlaylistSheetState adding: AddToPlaylistSheetState {
        onFinished: sheet.closeRequested()
    }

    title: "افزودن به پلیلیست"

    component Note: NText {
        width: parent.width
        role: Theme.caption
        color: Theme.white(0.6)
        horizontalAlignment: Text.AlignHCenter
        wrapMode: Text.Wrap
        topPadding: 12
        bottomPadding: 12
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }

    Note {
        visible: !sheet.adding.isSignedIn
        text: "برای افزودن به پلیلیست وارد شوید."
    }
    SearchField {
        width: parent.width
        visible: sheet.adding.isSignedIn
        focus: true
        placeholderText: "نام پلیلیست جدید…"
        buttonSymbol: "plus.circle.fill"
        buttonName: "ساخت پلی‌لیست"
        canSubmit: sheet.adding.canCreate
        isWaiting: sheet.adding.isCreating
        text: sheet.adding.newTitle
        onTextEdited: sheet.adding.newTitle = text
        onSubmitted: sheet.adding.createPlaylist()
    }
    Notice {
        width: parent.width
        horizontalAlignment: Text.AlignHCenter
        text: sheet.adding.message
        isFailure: sheet.adding.messageIsFailure
    }
    Note {
        visible: sheet.adding.hasNoPlaylist
        text: "هنوز پلیلیستی نداری — یکی بساز!"
    }
    ListView {
        id: list

        width: parent.width
        height: Math.min(contentHeight, 5.5 * (Theme.resultHeight + spacing))
        visible: sheet.adding.isSignedIn && count > 0
        clip: contentHeight > height
        interactive: contentHeight > height
        boundsBehavior: Flickable.StopAtBounds
        spacing: 6
        reuseItems: true
        activeFocusOnTab: true
        keyNavigationEnabled: true
        model: sheet.adding.playlists
        Accessible.role: Accessible.List
        Accessible.name: sheet.title

        delegate: FocusScope {
            id: cell

            required property int index
            required property string title
            required property string line
            required property string artworkAddress

            width: list.width
            height: Theme.resultHeight
            ListView.onPooled: visible = false
            ListView.onReused: visible = true

            StationRow {
                anchors.fill: parent
                focus: true
                enabled: !sheet.adding.isBusy
                title: cell.title
                line: cell.line
                isLineOutside: false
                artworkAddress: cell.artworkAddress
                isSelected: false
                actionSymbol: sheet.adding.addingRow === cell.index ? "" : "plus"
                onClicked: sheet.adding.add(cell.index)
            }
            Spinner {
                x: 16
                anchors.verticalCenter: parent.verticalCenter
                size: 22
                running: sheet.adding.addingRow === cell.index
            }
        }
    }
}
