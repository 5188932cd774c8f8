import QtQuick
import Navorin

// Where in the track the sound is, to be dragged; or that this is a broadcast. Time runs from the left.
Item {
    id: line

    required property FullPlayerViewState player
    property color tint

    LayoutMirroring.enabled: false
    LayoutMirroring.childrenInherit: true
    implicitHeight: Theme.grown(32, 22)

    Rectangle {
        anchors.centerIn: parent
        visible: line.player.isLive
        width: badge.width + 32
        height: parent.height
        radius: height / 2
        color: Theme.white(0.12)

        Row {
            id: badge
            anchors.centerIn: parent
            LayoutMirroring.enabled: true
            spacing: 8

            Rectangle {
                anchors.verticalCenter: parent.verticalCenter
                width: 7
                height: 7
                radius: 3.5
                color: Theme.live
            }
            NText {
                anchors.verticalCenter: parent.verticalCenter
                text: "پخش زنده"
                role: Theme.caption
                Accessible.role: Accessible.StaticText
                Accessible.name: text
            }
        }
    }

    component Time: NText {
        anchors.verticalCenter: parent.verticalCenter
        width: Theme.grown(44, 44)
        role: Theme.caption
        color: Theme.white(0.6)
        fontSizeMode: Text.HorizontalFit
        elide: Text.ElideNone
        visible: !line.player.isLive
    }
    Time {
        id: elapsed
        anchors.left: parent.left
        horizontalAlignment: Text.AlignLeft
        text: line.player.currentTimeText
    }
    NSlider {
        anchors.left: elapsed.right
        anchors.right: total.left
        anchors.verticalCenter: parent.verticalCenter
        visible: !line.player.isLive
        enabled: line.player.duration > 0
        from: 0
        to: line.player.duration > 0 ? line.player.duration : 1
        value: line.player.currentTime
        tint: line.tint
        thickness: 4
        keyboardStep: 5
        Accessible.name: "موقعیت پخش"
        onMoved: line.player.seek(value)
    }
    Time {
        id: total
        anchors.right: parent.right
        horizontalAlignment: Text.AlignRight
        text: line.player.durationText
    }
}
