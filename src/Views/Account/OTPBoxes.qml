import QtQuick
import QtQuick.Templates as T
import Navorin

// Six boxes over one field that nobody sees and that holds the focus: typed or pasted digits of any script arrive
// there, and what is no digit goes.
Item {
    id: boxes

    required property string code
    property bool isWrong: false

    signal edited(text: string)
    signal accepted

    implicitHeight: 52

    T.TextField {
        id: field
        width: 1
        height: 1
        opacity: 0.015
        focus: true
        text: boxes.code
        inputMethodHints: Qt.ImhDigitsOnly
        cursorDelegate: Item {}
        Accessible.role: Accessible.EditableText
        Accessible.name: "کد ۶ رقمی"
        onAccepted: boxes.accepted()
        onTextEdited: {
            boxes.edited(text)
            if (text !== boxes.code)
                text = boxes.code
        }
    }
    Timer {
        interval: 500
        running: true
        onTriggered: field.forceActiveFocus()
    }
    Row {
        LayoutMirroring.enabled: false // digits stand left to right
        LayoutMirroring.childrenInherit: true
        anchors.horizontalCenter: parent.horizontalCenter
        spacing: 10

        Repeater {
            model: 6

            Rectangle {
                id: box

                required property int index
                readonly property string digit: Array.from(boxes.code)[index] ?? ""
                readonly property bool isNext: field.activeFocus && index === Array.from(boxes.code).length

                width: 44
                height: 52
                radius: Theme.codeBoxRadius
                color: digit === "" ? Theme.white(0.04) : Theme.white(0.08)
                border.width: isNext ? 2 : 1
                border.color: boxes.isWrong ? Theme.live : isNext ? Qt.lighter(Theme.accent, 1.2) : Theme.white(0.12)

                NText {
                    anchors.centerIn: parent
                    text: box.digit
                    role: Theme.screenTitle
                    isOutside: true
                }
                Rectangle {
                    anchors.centerIn: parent
                    width: 2
                    height: 22
                    visible: box.isNext

                    SequentialAnimation on opacity {
                        running: box.isNext && Stage.isSeen
                        loops: Animation.Infinite
                        PropertyAction { value: 1 }
                        PauseAnimation { duration: 500 }
                        PropertyAction { value: 0 }
                        PauseAnimation { duration: 500 }
                    }
                }
            }
        }
    }
    TapHandler { onTapped: field.forceActiveFocus() }
}
