import QtQuick
import QtQuick.Controls
import QtQuick.Templates as T
import Navorin

ApplicationWindow {
    id: window

    readonly property bool isNarrow: width < Theme.mediumFrom
    readonly property bool isWide: width >= Theme.wideFrom
    readonly property bool isTyping: (activeFocusItem as TextInput) !== null || (activeFocusItem as TextEdit) !== null
    readonly property bool pressesByKey: Stage.keyboardSteers && (activeFocusItem as T.AbstractButton) !== null

    width: 1000
    height: 700
    minimumWidth: 360
    minimumHeight: 560
    visible: true
    title: "ناورین"
    color: Theme.background
    LayoutMirroring.enabled: true
    LayoutMirroring.childrenInherit: true

    ContentViewState {
        id: shell
    }
    // A focused control that is steered by keyboard presses itself; everywhere else space is the player's.
    Shortcut {
        sequence: "Space"
        enabled: !window.isTyping && !window.pressesByKey
        onActivated: shell.togglePlayPause()
    }

    Backdrop {
        anchors.fill: parent
        visible: !cover.isOpaque
        tone: shell.themeColor
        light: shell.hasStation ? 1 : 0

        Behavior on tone { ColorAnimation { duration: 900; easing.type: Easing.InOutQuad } }
        Behavior on light { NumberAnimation { duration: 900; easing.type: Easing.InOutQuad } }
    }
    // What an opaque full player hides is neither painted nor reached by key.
    Item {
        anchors.fill: parent
        visible: !cover.isOpaque
        enabled: !shell.isFullPlayerPresented

        // What a screen reader says first and Tab reaches first is what comes first here.
        Item {
            id: beforeContent
            anchors.fill: parent
        }
        TabStrip {
            id: tabs
            parent: window.isNarrow ? afterContent : beforeContent
            isRail: !window.isNarrow
            isWide: window.isWide
            x: isRail ? parent.width - width : 0
            y: isRail ? 0 : parent.height - height
            width: isRail ? (isWide ? 200 : 84) : parent.width
            height: isRail ? parent.height : Theme.grown(60, 20)
        }
        ContentView {
            id: content
            shell: shell
            currentTab: tabs.current
            isWide: window.isWide
            isNarrow: window.isNarrow
            width: parent.width - (tabs.isRail ? tabs.width : 0)
            height: parent.height - (tabs.isRail ? 0 : tabs.height)
            focus: true
        }
        Item {
            id: afterContent
            anchors.fill: parent
        }
    }
    Loader {
        id: cover

        property real presence: shell.isFullPlayerPresented ? 1 : 0
        readonly property bool isOpaque: presence > 0.999 && shell.isFullPlayerPresented && !isDragged
        readonly property bool isDragged: item !== null && (item as FullPlayerView).dragOffset > 0
        // Where the keyboard was, to be given back.
        property Item lastFocus: null

        anchors.fill: parent
        active: presence > 0 || shell.isFullPlayerPresented
        sourceComponent: FullPlayerView {
            presence: cover.presence
            isPresented: shell.isFullPlayerPresented
            focus: true
        }
        onLoaded: {
            const player = item as Item
            lastFocus = window.activeFocusItem
            player.forceActiveFocus()
        }
        onActiveChanged: if (!active && lastFocus !== null) lastFocus.forceActiveFocus()

        Behavior on presence { SpringMotion {} }
    }
}
