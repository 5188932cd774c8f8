import QtQuick
import Navorin

SheetPage {
    id: sheet

    readonly property AccountSheetState account: AccountSheetState {
        onFinished: sheet.closeRequested()
    }

    title: "حساب کاربری"
    spacing: 20

    component StatCard: Rectangle {
        id: card

        required property string symbol
        required property int count
        required property string label

        width: (parent.width - 12) / 2
        height: Theme.grown(108, 78)
        radius: Theme.panelRadius
        color: Theme.panelFill
        border.width: 1
        border.color: Theme.hairline
        Accessible.role: Accessible.StaticText
        Accessible.name: count + " " + label

        Column {
            anchors.centerIn: parent

            Icon {
                anchors.horizontalCenter: parent.horizontalCenter
                symbol: card.symbol
                size: 22
                color: ThemeFunctions.ink(Theme.accent)
            }
            NText {
                anchors.horizontalCenter: parent.horizontalCenter
                text: card.count
                role: Theme.screenTitle
            }
            NText {
                anchors.horizontalCenter: parent.horizontalCenter
                text: card.label
                role: Theme.caption
                color: Theme.white(0.6)
            }
        }
    }

    Item {
        width: parent.width
        height: 104

        ShaderEffect {
            readonly property color tone: Theme.accent
            readonly property real strength: 0.25

            anchors.centerIn: parent
            width: 320
            height: 240
            fragmentShader: "qrc:/navorin/shaders/Halo.frag.qsb"
        }
        Rectangle {
            anchors.centerIn: parent
            width: 96
            height: 96
            radius: 48
            gradient: Gradient {
                GradientStop { position: 0; color: Theme.accent }
                GradientStop { position: 1; color: Theme.violet }
            }

            NText {
                anchors.centerIn: parent
                text: sheet.account.initial
                isOutside: true
                font.pixelSize: 40
                font.weight: Font.Bold
                height: 56
            }
            ArtworkItem {
                anchors.fill: parent
                address: sheet.account.avatarAddress
                radius: 48
            }
        }
    }
    NText {
        width: parent.width
        text: sheet.account.name
        role: Theme.sheetTitle
        isOutside: true
        horizontalAlignment: Text.AlignHCenter
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }
    Row {
        width: parent.width
        spacing: 12

        StatCard {
            symbol: "music.note.list"
            count: sheet.account.playlistCount
            label: "پلیلیست"
        }
        StatCard {
            symbol: "heart.fill"
            count: sheet.account.favoriteCount
            label: "پسندیده"
        }
    }
    NButton {
        width: parent.width
        implicitHeight: Theme.grown(48, 24)
        focus: true
        text: "خروج از حساب"
        symbol: "rectangle.portrait.and.arrow.right"
        onClicked: sheet.account.logout()
    }
}
