import QtQuick
import Navorin

// A track of a playlist: its place, what it is, how long it takes, and what can be done with it.
ScaleButtonStyle {
    id: track

    required property PlaylistDetailViewState playlist
    required property int number
    required property string title
    required property string line
    required property string artworkAddress
    required property string note
    required property bool isSelected
    property bool isPlaying: false
    // The list's current row: its buttons are the Tab key's next steps.
    property bool isCurrent: false

    // With where in the row the menu is to open.
    signal menuRequested(at: point)
    signal editRequested
    signal deleteRequested

    text: title
    implicitHeight: Theme.trackHeight
    radius: Theme.artRadius
    focusPolicy: Qt.ClickFocus
    Accessible.description: line
    Accessible.selectable: true
    Accessible.selected: isSelected
    Keys.onMenuPressed: menuRequested(Qt.point(width / 2, height))
    Keys.onDeletePressed: deleteRequested()
    Keys.onPressed: event => {
        if (event.key === Qt.Key_F2) {
            editRequested()
            event.accepted = true
        }
    }

    background: Rectangle {
        radius: track.radius
        color: track.isSelected ? Theme.white(0.10) : track.down ? Theme.white(0.03) : Theme.white(0.04 + 0.06 * track.glow)
        border.width: track.isSelected ? 1 : 0
        border.color: Theme.white(0.12)
    }
    Item {
        anchors.fill: parent
        anchors.leftMargin: 8
        anchors.rightMargin: 10

        Item {
            id: place
            anchors.left: parent.left
            anchors.verticalCenter: parent.verticalCenter
            width: Theme.grown(36, 36)
            height: Theme.caption.line

            NText {
                anchors.fill: parent
                text: track.number
                role: Theme.caption
                color: Theme.white(0.6)
                horizontalAlignment: Text.AlignHCenter
                fontSizeMode: Text.HorizontalFit
                visible: !bars.active
            }
            Loader {
                id: bars
                anchors.centerIn: parent
                active: track.isSelected && track.isPlaying
                sourceComponent: EqualizerBars {}
            }
        }
        ArtworkImage {
            id: art
            anchors.left: place.right
            anchors.leftMargin: 8
            anchors.verticalCenter: parent.verticalCenter
            width: 44
            height: 44
            cornerRadius: Theme.rowRadius
            symbolSize: 20
            address: track.artworkAddress
        }
        Column {
            anchors.left: art.right
            anchors.leftMargin: 12
            anchors.right: length.left
            anchors.rightMargin: 12
            anchors.verticalCenter: parent.verticalCenter

            NText {
                width: parent.width
                text: track.title
                isOutside: true
            }
            NText {
                width: parent.width
                text: track.line
                role: Theme.smallCaption
                color: Theme.white(0.6)
                isOutside: true
                visible: text !== ""
            }
        }
        NText {
            id: length
            anchors.right: keep.left
            anchors.rightMargin: 4
            anchors.verticalCenter: parent.verticalCenter
            width: Math.max(36, implicitWidth)
            text: track.note
            role: Theme.caption
            color: Theme.white(0.55)
            horizontalAlignment: Text.AlignHCenter
        }
        TrackDownloadButton {
            id: keep
            anchors.right: more.left
            anchors.verticalCenter: parent.verticalCenter
            playlist: track.playlist
            row: track.number - 1
            focusPolicy: more.focusPolicy
        }
        ScaleButtonStyle {
            id: more
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            width: 36
            height: 36
            radius: 18
            text: "گزینهها"
            focusPolicy: track.isCurrent ? Qt.TabFocus : Qt.NoFocus
            onClicked: {
                const corner = mapToItem(track, 0, height)
                track.menuRequested(Qt.point(corner.x, corner.y))
            }

            background: Rectangle {
                radius: more.radius
                color: Theme.white(0.08 * more.glow)
            }
            Icon {
                anchors.centerIn: parent
                symbol: "ellipsis"
                size: 22
                opacity: 0.75 + 0.25 * more.glow
            }
        }
    }
    TapHandler {
        acceptedButtons: Qt.RightButton
        onTapped: point => track.menuRequested(point.position)
    }
}
