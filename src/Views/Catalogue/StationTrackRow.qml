import QtQuick
import Navorin

// One track of a list. Its menu opens with the other button of the mouse, a long press or the menu key.
ScaleButtonStyle {
    id: row

    required property string number
    required property string title
    required property string artist
    required property string artworkAddress
    required property string length
    property bool isCurrent: false
    property bool isPlaying: false
    property color tone: Theme.accent

    // `at` in the row.
    signal menuRequested(at: point)

    text: title
    radius: Theme.artRadius
    implicitHeight: Theme.trackHeight
    focusPolicy: Qt.ClickFocus // the list is one step of the Tab key; its rows are the arrows'
    Accessible.role: Accessible.ListItem
    Accessible.description: artist
    Keys.onMenuPressed: menuRequested(Qt.point(width - 120, height / 2))
    onPressAndHold: menuRequested(Qt.point(pressX, pressY))

    background: Rectangle {
        radius: row.radius
        color: row.isCurrent ? ThemeFunctions.blend(Theme.background, ThemeFunctions.glow(row.tone), 0.55) : Theme.rowFill
        border.width: row.isCurrent ? 1 : 0
        border.color: Theme.white(0.10)

        Rectangle {
            anchors.fill: parent
            radius: row.radius
            color: row.down ? Theme.black(0.14) : Theme.white(0.06 * row.glow)
        }
    }
    TapHandler {
        acceptedButtons: Qt.RightButton
        onTapped: point => row.menuRequested(point.position)
    }
    Item {
        anchors.fill: parent
        anchors.leftMargin: 6
        anchors.rightMargin: 16

        Item {
            id: leading
            anchors.left: parent.left
            width: Theme.grown(34, 34)
            height: parent.height

            NText {
                anchors.centerIn: parent
                anchors.verticalCenterOffset: 2
                width: parent.width
                visible: !row.isCurrent
                text: row.number
                role: Theme.caption
                color: Theme.white(0.5)
                horizontalAlignment: Text.AlignHCenter
                fontSizeMode: Text.HorizontalFit
            }
            Loader {
                anchors.centerIn: parent
                active: row.isCurrent
                sourceComponent: EqualizerBars {
                    tint: ThemeFunctions.ink(row.tone)
                    running: row.isPlaying
                }
            }
        }
        ArtworkImage {
            id: art
            anchors.left: leading.right
            anchors.leftMargin: 4
            anchors.verticalCenter: parent.verticalCenter
            width: 44
            height: 44
            cornerRadius: Theme.rowRadius
            symbolSize: 20
            address: row.artworkAddress
        }
        Column {
            anchors.left: art.right
            anchors.leftMargin: 12
            anchors.right: time.left
            anchors.rightMargin: 12
            anchors.verticalCenter: parent.verticalCenter

            NText {
                width: parent.width
                text: row.title
                isOutside: true
            }
            NText {
                width: parent.width
                text: row.artist
                role: Theme.smallCaption
                color: Theme.white(0.5)
                isOutside: true
            }
        }
        NText {
            id: time
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            width: Math.max(36, implicitWidth)
            text: row.length
            role: Theme.caption
            font.weight: Font.Normal
            color: Theme.white(0.4)
            horizontalAlignment: Text.AlignRight
        }
    }
}
