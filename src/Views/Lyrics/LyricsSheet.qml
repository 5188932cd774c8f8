import QtQuick
import Navorin

// The words of what plays, over the whole window, with the line that is sung in the middle.
FocusScope {
    id: page

    readonly property LyricsSheetState sheet: LyricsSheetState {
        isSeen: Stage.isSeen
    }
    property color tone: sheet.themeColor
    readonly property real margin: 24

    signal closeRequested

    focus: true
    Accessible.ignored: true // the sheet around it bears its name
    Accessible.name: "متن ترانه"
    Component.onCompleted: sheet.appear()

    Behavior on tone { ColorAnimation { duration: 900; easing.type: Easing.InOutQuad } }

    // Other shortcuts of the window do not reach a screen above it.
    Shortcut {
        sequence: "Space"
        enabled: !(Stage.keyboardSteers && (translate.activeFocus || close.activeFocus))
        onActivated: page.sheet.togglePlayPause()
    }
    Backdrop {
        anchors.fill: parent
        tone: page.tone
        light: 0.55
    }
    // Nothing below is to be reached through it.
    MouseArea {
        anchors.fill: parent
        hoverEnabled: true
        acceptedButtons: Qt.AllButtons
        onWheel: event => event.accepted = true
    }
    Loader {
        anchors.top: header.bottom
        anchors.bottom: parent.bottom
        width: parent.width
        focus: true
        sourceComponent: switch (page.sheet.content) {
            case LyricsSheetState.Failed: return failed
            case LyricsSheetState.NotFound: return notFound
            case LyricsSheetState.Lines: return lines
            default: return waiting
        }
    }
    Item {
        id: header
        x: page.margin
        width: parent.width - 2 * x
        height: Theme.grown(72, 44)

        Column {
            anchors.left: parent.left
            anchors.right: translate.left
            anchors.rightMargin: 16
            anchors.verticalCenter: parent.verticalCenter

            NText {
                width: parent.width
                text: page.sheet.title
                role: Theme.button
                font.weight: Font.Bold
                isOutside: true
                Accessible.role: Accessible.Heading
                Accessible.name: text
            }
            NText {
                width: parent.width
                text: page.sheet.subtitle
                role: Theme.smallCaption
                color: Theme.white(0.5)
                isOutside: true
                Accessible.role: Accessible.StaticText
                Accessible.name: text
            }
        }
        ScaleButtonStyle {
            id: translate
            anchors.right: close.left
            anchors.rightMargin: 10
            anchors.verticalCenter: parent.verticalCenter
            leftPadding: 12
            rightPadding: 12
            topPadding: 7
            bottomPadding: 7
            radius: height / 2
            text: "ترجمه"
            checkable: true
            checked: page.sheet.showTranslation
            Accessible.role: Accessible.CheckBox
            Accessible.checked: checked
            onToggled: page.sheet.toggleTranslation()

            background: Rectangle {
                radius: translate.radius
                color: translate.checked ? Theme.selected : Theme.secondaryFill

                Rectangle {
                    anchors.fill: parent
                    radius: parent.radius
                    color: translate.down ? Theme.black(0.14) : Theme.white(0.06 * translate.glow)
                }
            }
            contentItem: NText {
                text: translate.text
                role: Theme.caption
                font.weight: Font.Bold
                color: translate.checked ? "white" : Theme.white(0.55 + 0.25 * translate.glow)
            }
        }
        RoundButton {
            id: close
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            size: 34
            symbol: "chevron.down"
            symbolSize: 20
            symbolOpacity: 0.7
            fill: Theme.chipFill
            text: "بستن"
            onClicked: page.closeRequested()
        }
    }

    Component {
        id: waiting
        Item {
            Spinner {
                anchors.centerIn: parent
                color: "white"
            }
        }
    }
    component Message: Item {
        property alias symbol: state.symbol
        property alias title: state.title
        property alias message: state.message

        EmptyState {
            id: state
            anchors.centerIn: parent
            anchors.verticalCenterOffset: -36
            width: Math.min(parent.width - 80, 560)
            symbol: ""
            symbolSize: 42
            message: ""
        }
    }
    Component {
        id: failed
        Message {
            symbol: "wifi.exclamationmark"
            title: "خطا در دریافت متن ترانه"
            message: "اتصال اینترنت را بررسی کنید و دوباره تلاش کنید."
        }
    }
    Component {
        id: notFound
        Message {
            symbol: "music.note.list"
            title: "متن ترانهای یافت نشد"
            message: "این قطعه احتمالاً بیکلام است یا متن برای آن ثبت نشده است."
        }
    }
    Component {
        id: lines
        LyricsLines { sheet: page.sheet }
    }
}
