import QtQuick
import Navorin

// Asks before something that cannot be taken back. Nothing happens on Escape or a click beside it.
Sheet {
    id: dialog

    property string message
    property string confirmText
    property string cancelText: "انصراف"
    property bool isDestructive: true

    signal confirmed

    function ask() {
        present(question)
    }

    sheetWidth: 360

    Component {
        id: question

        FocusScope {
            implicitHeight: words.height + 48
            focus: true

            Column {
                id: words
                x: 24
                y: 24
                width: parent.width - 2 * x
                spacing: 8

                NText {
                    width: parent.width
                    text: dialog.title
                    role: Theme.section
                    wrapMode: Text.Wrap
                    Accessible.role: Accessible.Heading
                    Accessible.name: text
                }
                NText {
                    width: parent.width
                    visible: text !== ""
                    text: dialog.message
                    role: Theme.caption
                    font.weight: Font.Normal
                    color: Theme.white(0.6)
                    wrapMode: Text.Wrap
                    Accessible.role: Accessible.StaticText
                    Accessible.name: text
                }
                Item { width: 1; height: 8 }
                Row {
                    readonly property real half: (width - spacing) / 2
                    width: parent.width
                    spacing: 12

                    NButton {
                        width: parent.half
                        text: dialog.confirmText
                        isPrimary: !dialog.isDestructive
                        isColored: dialog.isDestructive
                        leadingColor: "#b3363b"
                        onClicked: {
                            dialog.close()
                            dialog.confirmed()
                        }
                    }
                    // What Enter does, if nothing else is chosen, must be harmless.
                    NButton {
                        width: parent.half
                        text: dialog.cancelText
                        focus: true
                        onClicked: dialog.close()
                    }
                }
            }
        }
    }
}
