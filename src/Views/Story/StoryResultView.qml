import QtQuick
import Navorin

// A finished story: the video, and what can be done with it.
Column {
    id: result

    required property StoryViewState story
    required property url url
    property bool savedFlag: false

    signal regenerateRequested
    signal saveRequested

    spacing: 16

    Rectangle {
        width: parent.width
        height: 360
        radius: Theme.panelRadius
        color: "#130609"

        // By its address: what plays videos is loaded with the first of them, and not with the program.
        Loader {
            anchors.fill: parent
            active: result.story.hasVideo
            source: "StoryPlayer.qml"
            onLoaded: {
                item.story = result.story
                item.source = result.url
            }
        }
        Rectangle {
            anchors.fill: parent
            radius: parent.radius
            color: "transparent"
            border.width: 1
            border.color: Theme.white(0.1)
        }
    }
    Item {
        width: parent.width
        height: share.height

        RoundButton {
            id: again
            anchors.left: parent.left
            size: share.height
            symbol: "arrow.counterclockwise"
            text: "ساخت دوباره"
            symbolSize: 22
            symbolOpacity: 0.8
            onClicked: result.regenerateRequested()
        }
        NButton {
            id: share
            anchors.left: again.right
            anchors.leftMargin: 10
            anchors.right: keep.left
            anchors.rightMargin: 10
            height: Theme.grown(48, 24)
            isPrimary: true
            symbol: "square.and.arrow.up"
            text: "اشتراکگذاری"
            Accessible.role: Accessible.ButtonMenu
            onClicked: ways.open()

            NMenu {
                id: ways
                y: -implicitHeight - 6
                width: Math.max(share.width, 210)

                NMenuItem {
                    text: "باز کردن با…"
                    symbol: "arrow.up.forward.app"
                    onTriggered: result.story.openWith()
                }
                NMenuItem {
                    text: "نمایش در پوشه"
                    symbol: "folder"
                    onTriggered: result.story.showInFileManager()
                }
                NMenuItem {
                    text: "کپی ویدیو"
                    symbol: "doc.on.doc"
                    onTriggered: result.story.copyVideo()
                }
            }
        }
        RoundButton {
            id: keep
            anchors.right: parent.right
            size: share.height
            symbol: result.savedFlag ? "checkmark.circle.fill" : "square.and.arrow.down"
            text: result.savedFlag ? "ذخیره شد" : "ذخیره"
            symbolSize: 22
            symbolColor: result.savedFlag ? Theme.accent : "white"
            symbolOpacity: result.savedFlag ? 1 : 0.8
            onClicked: result.saveRequested()
        }
    }
}
