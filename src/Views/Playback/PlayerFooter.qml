import QtQuick
import Navorin

// Taking the song along: onto this machine, or into a chat.
Column {
    id: footer

    required property FullPlayerViewState player
    property color tint

    spacing: 8

    Row {
        width: parent.width
        height: Theme.grown(48, 24)
        spacing: 10

        ScaleButtonStyle {
            id: keep
            width: height
            height: parent.height
            radius: Theme.artRadius
            visible: footer.player.hasTrack
            text: footer.player.keep === FullPlayerViewState.Kept ? "حذف دانلود"
                : footer.player.keep === FullPlayerViewState.Loading ? "لغو دانلود" : "دانلود آفلاین"
            onClicked: footer.player.toggleKeep()

            background: Rectangle {
                radius: keep.radius
                color: keep.down ? Theme.white(0.04) : Theme.white(0.08 + 0.06 * keep.glow)
            }
            Icon {
                anchors.centerIn: parent
                visible: footer.player.keep !== FullPlayerViewState.Loading
                symbol: footer.player.keep === FullPlayerViewState.Kept ? "checkmark.circle.fill" : "arrow.down.circle"
                size: 26
                color: footer.player.keep === FullPlayerViewState.Kept ? Theme.success : "white"
                opacity: footer.player.keep === FullPlayerViewState.Kept ? 1 : Math.min(1, 0.7 + 0.25 * keep.glow)
            }
            ProgressRing {
                anchors.centerIn: parent
                width: Theme.grown(34, 15)
                height: width
                visible: footer.player.keep === FullPlayerViewState.Loading
                progress: footer.player.keepProgress
                color: footer.tint

                NText {
                    anchors.centerIn: parent
                    // Lone digits sit high in their line.
                    anchors.verticalCenterOffset: 1.5
                    text: Math.floor(footer.player.keepProgress * 100)
                    font.pixelSize: Math.round(11 * Stage.textScale)
                    font.weight: Font.DemiBold
                }
            }
        }
        NButton {
            width: parent.width - (keep.visible ? keep.width + parent.spacing : 0)
            height: parent.height
            text: footer.player.tgLoading ? "در حال ساخت لینک…" : "دانلود در تلگرام"
            symbol: footer.player.tgLoading ? "" : "arrow.down.circle.fill"
            hasSpinner: footer.player.tgLoading
            isColored: true
            leadingColor: Qt.darker(telegram, 1.17)
            trailingColor: Qt.darker(telegram, 1.38)
            onClicked: footer.player.openInTelegram()

            readonly property color telegram: Qt.rgba(0.15, 0.55, 0.95, 1)
        }
    }
    component Complaint: NText {
        width: parent.width
        role: Theme.smallCaption
        horizontalAlignment: Text.AlignHCenter
        wrapMode: Text.Wrap
        maximumLineCount: 3
        visible: text !== ""
        isOutside: true
        Accessible.role: Accessible.AlertMessage
        Accessible.name: text
    }
    Complaint {
        text: footer.player.tgError
        color: Theme.white(0.6)
    }
    Complaint {
        text: footer.player.keepError
        color: Theme.live
        opacity: 0.85
    }
}
