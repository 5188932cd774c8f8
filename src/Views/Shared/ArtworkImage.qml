import QtQuick
import Navorin

// An artwork in a rounded frame; a placeholder while it loads and where there is none.
Item {
    id: artwork

    property alias address: picture.address
    property real cornerRadius: 0
    property real symbolSize: 30

    Rectangle {
        anchors.fill: parent
        radius: artwork.cornerRadius
        visible: picture.status !== ArtworkItem.Ready || picture.opacity < 1
        gradient: Gradient {
            GradientStop { position: 0; color: "#2b2b33" }
            GradientStop { position: 1; color: "#1a1a20" }
        }

        Icon {
            anchors.centerIn: parent
            symbol: "dot.radiowaves.left.and.right"
            size: artwork.symbolSize
            opacity: 0.5
            visible: !spinner.visible
        }
        Spinner {
            id: spinner
            anchors.centerIn: parent
            size: Math.min(26, artwork.width / 2)
            opacity: 0.7
            running: picture.status === ArtworkItem.Loading
        }
    }
    ArtworkItem {
        id: picture
        anchors.fill: parent
        radius: artwork.cornerRadius
        opacity: status === ArtworkItem.Ready ? 1 : 0

        Behavior on opacity {
            enabled: picture.status === ArtworkItem.Ready
            NumberAnimation { duration: 180; easing.type: Easing.OutQuad }
        }
    }
}
