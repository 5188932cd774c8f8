import QtQuick
import Navorin

// Keeps a track of a playlist on this machine: what a tap does follows where it stands.
ScaleButtonStyle {
    id: button

    required property PlaylistDetailViewState playlist
    required property int row
    readonly property TrackDownloadState download: TrackDownloadState {
        playlist: button.playlist
        row: button.row
    }

    width: 36
    height: 36
    radius: 18
    text: download.isKept ? "حذف دانلود" : download.isLoading ? "لغو دانلود" : "دانلود آفلاین"
    onClicked: download.toggle()

    background: Rectangle {
        radius: button.radius
        color: Theme.white(0.08 * button.glow)
    }
    Icon {
        anchors.centerIn: parent
        visible: !button.download.isLoading
        symbol: button.download.isKept ? "checkmark.circle.fill" : "arrow.down.circle"
        size: 22
        color: button.download.isKept ? Theme.success : "white"
        opacity: button.download.isKept ? 1 : 0.75 + 0.25 * button.glow
    }
    ProgressRing {
        anchors.centerIn: parent
        width: 24
        height: 24
        visible: button.download.isLoading
        progress: button.download.progress
    }
}
