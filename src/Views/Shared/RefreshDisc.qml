import QtQuick
import Navorin

// Comes down with the pull on a list, and stays while it is fetched anew.
Rectangle {
    id: disc

    required property real pull
    required property bool isRefreshing
    readonly property real pullToRefresh: 72
    readonly property bool isPulledFar: pull >= pullToRefresh

    anchors.horizontalCenter: parent.horizontalCenter
    z: 2
    y: isRefreshing ? 12 : Math.min(pull, pullToRefresh) - height
    width: 36
    height: 36
    radius: 18
    color: Theme.sheet
    border.width: 1
    border.color: Theme.hairline
    opacity: isRefreshing ? 1 : Math.min(1, pull / pullToRefresh)
    visible: opacity > 0

    Behavior on opacity { NumberAnimation { duration: Theme.hoverTime } }

    Spinner {
        anchors.centerIn: parent
        size: 20
        running: disc.visible
    }
}
