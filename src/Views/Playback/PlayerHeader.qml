import QtQuick
import Navorin

// The full player's bar: the way back, the name, and what else can be done with what plays.
Item {
    id: header

    required property FullPlayerViewState player

    signal storyRequested
    signal equalizerRequested
    signal playlistRequested
    signal lyricsRequested

    height: 48

    component Act: RoundButton {
        fill: Theme.chipFill
        symbolOpacity: 0.7
    }

    Act {
        id: back
        anchors.left: parent.left
        anchors.verticalCenter: parent.verticalCenter
        symbol: "chevron.down"
        text: "بستن"
        symbolSize: 26
        onClicked: header.player.dismiss()
    }
    NText {
        readonly property real middle: (parent.width - width) / 2

        // In the middle of the window, unless the buttons come near: then in the middle of what they leave.
        x: parent.width >= 600 ? middle : (acts.width + back.x - width) / 2
        anchors.verticalCenter: parent.verticalCenter
        text: "ناورین رادیو"
        role: Theme.rowTitle
        color: Theme.white(0.6)
        visible: width + 8 < parent.width - acts.width - back.width
    }
    Row {
        id: acts
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        spacing: parent.width < 600 ? 6 : 8

        Act {
            symbol: "sparkles"
            text: "استوری هوشمند"
            onClicked: header.storyRequested()
        }
        Act {
            symbol: "slider.horizontal.3"
            text: "اکولایزر"
            onClicked: header.equalizerRequested()
        }
        Act {
            symbol: "plus"
            text: "افزودن به پلیلیست"
            onClicked: header.playlistRequested()
        }
        Act {
            symbol: "text.quote"
            text: "متن ترانه"
            onClicked: header.lyricsRequested()
        }
        Act {
            id: heart
            symbol: header.player.isFavorite ? "heart.fill" : "heart"
            text: header.player.isFavorite ? "حذف از پسندیدهها" : "پسندیدن"
            symbolColor: header.player.isFavorite ? Theme.heart : "white"
            symbolOpacity: header.player.isFavorite ? 1 : 0.7
            onClicked: header.player.handleFavoriteTap()

            // Beats while the library is asked.
            SequentialAnimation {
                running: header.player.favAnimating && !Stage.reducedMotion
                loops: Animation.Infinite
                alwaysRunToEnd: true

                SpringMotion { target: heart.glyph; property: "scale"; to: 1.25; response: 0.25; damping: 0.6 }
                SpringMotion { target: heart.glyph; property: "scale"; to: 1; response: 0.3; damping: 0.7 }
            }
        }
    }
}
