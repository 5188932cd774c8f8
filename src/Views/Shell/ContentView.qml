import QtQuick
import Navorin

// What stands beside the tabs: the screen of the current one, and over it the mini player while a station is
// selected. A screen that is left keeps its state.
FocusScope {
    id: content

    required property ContentViewState shell
    required property int currentTab
    required property bool isWide
    required property bool isNarrow
    readonly property real margin: isNarrow ? 16 : 24

    clip: true

    ScreenStack {
        id: radio
        anchors.fill: parent
        margin: content.margin
        visible: content.currentTab === 0
        focus: visible
        initialItem: HomeView {
            margin: content.margin
            onDetailRequested: station => radio.open(detailView, {station: station})
            onSearchRequested: radio.open(searchView, {})
        }
    }
    Component {
        id: detailView
        StationDetailView {}
    }
    Component {
        id: searchView
        SoundCloudSearchView {}
    }
    Component {
        id: offlineView
        OfflineLibraryView {}
    }
    // Made at the first visit: the start does not pay for it.
    Loader {
        anchors.fill: parent
        active: visible || item !== null
        visible: content.currentTab === 1
        focus: visible

        sourceComponent: ScreenStack {
            id: libraryStack
            margin: content.margin
            focus: true
            initialItem: LibraryView {
                margin: libraryStack.margin
                offlineScreen: offlineView
                focus: true
                onScreenRequested: (screen, properties) => libraryStack.open(screen, properties)
            }
        }
    }

    // Darkens what passes below the mini player.
    Rectangle {
        anchors.bottom: parent.bottom
        width: parent.width
        height: Theme.grown(150, 46)
        opacity: mini.presence
        visible: opacity > 0
        gradient: Gradient {
            GradientStop { position: 0; color: Theme.black(0) }
            GradientStop { position: 0.5; color: Theme.black(0.28) }
            GradientStop { position: 1; color: Theme.black(0.62) }
        }
    }
    MiniPlayerBar {
        id: mini

        // 0 below the edge, 1 in its place.
        property real presence: content.shell.hasStation ? 1 : 0
        readonly property real bottomGap: content.isNarrow ? 12 : 18

        anchors.horizontalCenter: parent.horizontalCenter
        y: parent.height - presence * (height + bottomGap)
        width: content.isWide ? Math.min(720, parent.width - 48)
                              : parent.width - 2 * (content.isNarrow ? 12 : content.margin)
        opacity: Math.min(1, presence)
        visible: presence > 0.001

        Behavior on presence { SpringMotion {} }
    }
}
