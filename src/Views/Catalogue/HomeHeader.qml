import QtQuick
import Navorin

// Wordmark and greeting on the leading side; the badge and, after it, the round buttons on the other.
Item {
    id: header

    required property HomeViewState home
    // The greeting has to fit beside the buttons of a narrow window.
    readonly property bool isTight: width < 480
    readonly property real buttonSize: isTight ? 36 : 40

    signal shazamRequested
    signal searchRequested
    signal accountRequested

    implicitHeight: Math.max(Theme.grown(64, 60), leading.height + 4)

    Column {
        id: leading
        anchors.left: parent.left
        anchors.verticalCenter: parent.verticalCenter
        width: parent.width - trailing.width - (header.isTight ? 8 : 16)

        GradientText {
            anchors.left: parent.left
            height: Theme.wordmark.line
            text: "ناورین"
            font.family: Theme.ownFamily
            font.pixelSize: Theme.wordmark.size
            font.weight: Theme.wordmark.weight
            bottomColor: Theme.white(0.72)
            Accessible.role: Accessible.Heading
            Accessible.name: text
        }
        NText {
            width: parent.width
            text: header.home.greeting
            role: header.isTight ? Theme.smallCaption : Theme.caption
            font.weight: Font.Normal
            color: Theme.white(0.55)
            wrapMode: Text.Wrap
            maximumLineCount: 2
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
    }
    Row {
        id: trailing
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        spacing: header.isTight ? 6 : 8

        SignalBadge {
            anchors.verticalCenter: parent.verticalCenter
            label: header.home.statusLabel
            isPlaying: header.home.isPlaying
        }
        RoundButton {
            text: "تشخیص آهنگ"
            symbol: "mic.fill"
            size: header.buttonSize
            onClicked: header.shazamRequested()
        }
        RoundButton {
            text: "جستجوی ساندکلود"
            symbol: "magnifyingglass"
            size: header.buttonSize
            onClicked: header.searchRequested()
        }
        RoundButton {
            text: "حساب کاربری"
            symbol: header.home.isSignedIn ? "person.crop.circle.fill" : "person.crop.circle"
            size: header.buttonSize
            onClicked: header.accountRequested()
        }
    }
}
