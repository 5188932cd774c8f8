import QtQuick
import Navorin

// One kept track; a tap plays it, and what else can be done stands in a menu.
ScaleButtonStyle {
    id: row

    required property int number
    required property string title
    required property string artist
    required property string artworkAddress
    required property string duration

    signal menuRequested

    implicitHeight: Theme.trackHeight
    radius: Theme.artRadius
    text: title
    focusPolicy: Qt.ClickFocus // the list is one step of the Tab key; its rows are the arrows'
    Accessible.description: artist
    onPressAndHold: menuRequested()
    Keys.onMenuPressed: menuRequested()

    TapHandler {
        acceptedButtons: Qt.RightButton
        onTapped: row.menuRequested()
    }
    background: Rectangle {
        radius: row.radius
        color: Theme.white(0.04 + 0.06 * row.glow)
        border.width: 1
        border.color: Theme.white(0.03)
    }
    NText {
        id: place
        anchors.left: parent.left
        anchors.leftMargin: 4
        anchors.verticalCenter: parent.verticalCenter
        width: Theme.grown(40, 20)
        text: row.number
        role: Theme.caption
        color: Theme.white(0.5)
        horizontalAlignment: Text.AlignHCenter
    }
    ArtworkImage {
        id: picture
        anchors.left: place.right
        anchors.verticalCenter: parent.verticalCenter
        width: 44
        height: 44
        cornerRadius: Theme.rowRadius
        symbolSize: 20
        address: row.artworkAddress
    }
    NText {
        id: name
        anchors.left: picture.right
        anchors.leftMargin: 12
        anchors.right: time.left
        anchors.rightMargin: 12
        y: row.artist === "" ? Math.round((parent.height - height) / 2) : 10
        text: row.title
        isOutside: true
    }
    NText {
        anchors.left: picture.right
        anchors.leftMargin: 12
        anchors.right: time.left
        anchors.rightMargin: 12
        y: name.y + name.height + 1
        text: row.artist
        role: Theme.smallCaption
        isOutside: true
        color: Theme.white(0.55)
    }
    NText {
        id: time
        anchors.right: glyph.left
        anchors.rightMargin: 12
        anchors.verticalCenter: parent.verticalCenter
        width: Math.max(36, implicitWidth)
        text: row.duration
        role: Theme.caption
        color: Theme.white(0.5)
        horizontalAlignment: Text.AlignHCenter
    }
    Icon {
        id: glyph
        anchors.right: parent.right
        anchors.rightMargin: 16
        anchors.verticalCenter: parent.verticalCenter
        symbol: "play.fill"
        size: 20
        opacity: 0.55 + 0.25 * row.glow
    }
}
