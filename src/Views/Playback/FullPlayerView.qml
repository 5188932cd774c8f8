import QtQuick
import Navorin

// The record and all that steers it, over the whole window. It comes up from below while its light fades in, and
// follows a drag down until that is far enough to close it.
FocusScope {
    id: screen

    // 0 away, 1 in its place.
    required property real presence
    required property bool isPresented
    readonly property FullPlayerViewState player: FullPlayerViewState {
        onLoginRequested: screen.showSheet(loginSheet)
    }
    readonly property color ink: ThemeFunctions.ink(tone)
    property color tone: player.themeColor

    readonly property var sizes: player.metrics(width, height)
    readonly property bool isWide: width >= 860
    readonly property real margin: width < Theme.mediumFrom ? 16 : 24
    readonly property real headerBottom: header.y + header.height
    readonly property real bannerSpace: banner.active ? 140 + 14 : 0
    readonly property real stageBottom: height - 16 - bannerSpace
    readonly property real columnWidth: isWide ? 420 : Math.min(width - 2 * (margin + 8), 420)

    // One column: what is left over in height goes in equal gaps between its parts.
    readonly property real needed: sizes.record + sizes.belowRecord + column.contentHeight
    readonly property real gap: isWide ? (sizes.isSmall ? 20 : 24)
                                       : Math.max(9, Math.min(24, (stageBottom - headerBottom - needed) / (column.gaps + 1)))
    // What does not fit in height even so is taken from the record, the only part that stays itself when smaller.
    readonly property real lack: isWide ? 0 : Math.max(0, needed + gap * column.gaps + 4 - (stageBottom - headerBottom))
    readonly property real slack: Math.max(0, stageBottom - headerBottom - needed - gap * column.gaps)

    property real dragOffset: 0

    AdBannerViewState { id: ads }

    function openEqualizer() {
        sheet.sheetWidth = 480
        sheet.present(equalizerSheet)
    }
    function openStory() {
        if (!player.hasStation)
            return
        sheet.sheetWidth = 648
        sheet.present(storySheet)
    }
    function showSheet(what: Component) {
        sheet.sheetWidth = 440
        sheet.present(what)
    }

    Accessible.role: Accessible.Pane
    Accessible.name: "ناورین رادیو"

    Behavior on tone { ColorAnimation { duration: 900; easing.type: Easing.InOutQuad } }

    // Nothing below is to be reached through it.
    MouseArea {
        anchors.fill: parent
        hoverEnabled: true
        acceptedButtons: Qt.AllButtons
        onWheel: event => event.accepted = true
    }
    Shortcut {
        sequences: ["Escape", StandardKey.Back]
        enabled: screen.isPresented && !sheet.visible && !lyrics.visible
        onActivated: screen.player.dismiss()
    }
    Shortcut {
        sequence: "Ctrl+Right"
        enabled: screen.player.canSkipTracks
        onActivated: screen.player.nextTrack()
    }
    Shortcut {
        sequence: "Ctrl+Left"
        enabled: screen.player.canSkipTracks
        onActivated: screen.player.previousTrack()
    }
    DragHandler {
        id: drag

        readonly property point moved: Qt.point(centroid.scenePosition.x - centroid.scenePressPosition.x,
                                                centroid.scenePosition.y - centroid.scenePressPosition.y)
        property point last

        target: null
        xAxis.enabled: false
        dragThreshold: 10
        onMovedChanged: if (active) {
            last = moved
            screen.dragOffset = screen.player.offsetOfDrag(moved, screen.dragOffset)
        }
        onActiveChanged: {
            if (active)
                return
            if (screen.player.isDismissal(last))
                screen.player.dismiss()
            else
                springBack.restart()
            last = Qt.point(0, 0)
        }
    }
    SpringMotion {
        id: springBack
        target: screen
        property: "dragOffset"
        to: 0
        response: 0.32
        damping: 0.85
    }

    PlayerBackdrop {
        anchors.fill: parent
        opacity: Math.min(1, screen.presence) * (1 - 0.5 * Math.min(1, screen.dragOffset / screen.height))
        tone: screen.tone
        reach: screen.sizes.record / 2
        lamp: Qt.point(record.x + record.width / 2, record.y + record.height / 2)
    }
    Item {
        id: stage
        visible: !lyrics.isOpaque
        y: (1 - screen.presence) * screen.height + screen.dragOffset
        width: parent.width
        height: parent.height

        PlayerHeader {
            id: header
            player: screen.player
            x: screen.margin
            y: 8
            width: parent.width - 2 * x
            onStoryRequested: screen.openStory()
            onEqualizerRequested: screen.openEqualizer()
            onPlaylistRequested: screen.showSheet(screen.player.isAuthed ? playlistSheet : loginSheet)
            onLyricsRequested: if (screen.player.hasStation) lyrics.open()
        }
        Record {
            id: record
            readonly property real middle: (screen.headerBottom + screen.stageBottom) / 2

            x: screen.isWide ? Math.round(screen.width / 2 + 260 - width / 2) : Math.round((screen.width - width) / 2)
            y: screen.isWide ? Math.round(middle - height / 2)
                             : Math.round(screen.headerBottom + Math.max(4, screen.slack / 2))
            width: Math.round(Math.max(60, screen.sizes.record - screen.lack))
            height: width
            artwork: Math.round(screen.sizes.artwork * width / screen.sizes.record)
            spot: Math.round(screen.sizes.spot * width / screen.sizes.record)
            address: screen.player.artworkAddress
            tone: screen.ink
            isPlaying: screen.player.isPlaying
        }
        Column {
            id: column

            readonly property int gaps: 4
            readonly property real contentHeight: names.height + position.height + transport.height + volume.height
                                                  + footer.height

            x: Math.round(screen.isWide ? screen.width / 2 - 24 - width : (screen.width - width) / 2)
            y: Math.round(screen.isWide ? record.middle - height / 2
                                        : record.y + record.height + screen.sizes.belowRecord)
            width: screen.columnWidth
            spacing: screen.gap

            Column {
                id: names
                width: parent.width
                spacing: 2

                NText {
                    width: parent.width
                    text: screen.player.title
                    role: screen.isWide ? Theme.wideTitle : Theme.screenTitle
                    horizontalAlignment: screen.isWide ? Text.AlignLeft : Text.AlignHCenter
                    wrapMode: screen.isWide ? Text.Wrap : Text.NoWrap
                    maximumLineCount: 2
                    isOutside: true
                    Accessible.role: Accessible.Heading
                    Accessible.name: text
                }
                NText {
                    width: parent.width
                    text: screen.player.subtitle
                    role: Theme.button
                    font.weight: Font.Normal
                    color: Theme.white(0.55)
                    horizontalAlignment: screen.isWide ? Text.AlignLeft : Text.AlignHCenter
                    isOutside: true
                    Accessible.role: Accessible.StaticText
                    Accessible.name: text
                }
            }
            PositionLine {
                id: position
                width: parent.width
                player: screen.player
                tint: screen.ink
            }
            TransportControls {
                id: transport
                anchors.horizontalCenter: parent.horizontalCenter
                player: screen.player
                playButton: screen.sizes.playButton
                spacing: Math.max(0, Math.min(screen.isWide ? 14 : 12, (parent.width - 4 * 54 - playButton) / 4))
                focus: true
            }
            VolumeLine {
                id: volume
                anchors.horizontalCenter: parent.horizontalCenter
                width: Math.min(290, parent.width - 40)
                player: screen.player
            }
            PlayerFooter {
                id: footer
                width: parent.width
                player: screen.player
                tint: screen.ink
            }
        }
        Loader {
            id: banner
            active: ads.isConfigured && !screen.sizes.isSmall
            anchors.bottom: parent.bottom
            anchors.bottomMargin: 16
            anchors.horizontalCenter: parent.horizontalCenter
            width: Math.min(parent.width - 2 * screen.margin, 928)
            height: 140
            sourceComponent: AdBannerView {}
        }
    }

    Sheet { id: sheet }
    CoverSheet {
        id: lyrics
        screen: LyricsSheet { onCloseRequested: lyrics.close() }
    }
    Component {
        id: loginSheet
        LoginSheet { onCloseRequested: sheet.close() }
    }
    Component {
        id: playlistSheet
        AddToPlaylistSheet { onCloseRequested: sheet.close() }
    }
    Component {
        id: storySheet
        StoryView { onCloseRequested: sheet.close() }
    }
    Component {
        id: equalizerSheet
        EQView { onCloseRequested: sheet.close() }
    }
}
