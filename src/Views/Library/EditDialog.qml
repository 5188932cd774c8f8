import QtQuick
import Navorin

// Two lines to change, and to keep or not. It stays until what was typed is kept, so that a failure loses nothing.
Sheet {
    id: dialog

    property string message
    property string firstLabel
    property string secondLabel
    property string secondSymbol: "pencil"
    property string firstText
    property string secondText
    property string errorMessage
    property bool isWaiting: false
    // Whether it is to be seen; `dismissed` says that the user closed it.
    property bool isShown: false

    signal saved(first: string, second: string)
    signal dismissed

    sheetWidth: 400
    onIsShownChanged: isShown ? present(form) : close()
    onClosed: dismissed()

    Component {
        id: form

        FocusScope {
            id: content

            function save() {
                if (!dialog.isWaiting)
                    dialog.saved(first.text, second.text)
            }

            implicitHeight: words.height + 48
            focus: true

            Column {
                id: words
                x: 24
                y: 24
                width: parent.width - 2 * x
                spacing: 12

                NText {
                    width: parent.width
                    text: dialog.title
                    role: Theme.section
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
                NField {
                    id: first
                    width: parent.width
                    focus: true
                    symbol: "pencil"
                    placeholderText: dialog.firstLabel
                    text: dialog.firstText
                    Component.onCompleted: selectAll()
                    onAccepted: content.save()
                }
                NField {
                    id: second
                    width: parent.width
                    symbol: dialog.secondSymbol
                    placeholderText: dialog.secondLabel
                    text: dialog.secondText
                    onAccepted: content.save()
                }
                Notice {
                    width: parent.width
                    text: dialog.errorMessage
                    isFailure: true
                }
                Row {
                    readonly property real half: (width - spacing) / 2
                    width: parent.width
                    spacing: 12

                    NButton {
                        width: parent.half
                        text: "ذخیره"
                        isPrimary: true
                        isWaiting: dialog.isWaiting
                        onClicked: content.save()
                    }
                    NButton {
                        width: parent.half
                        text: "انصراف"
                        onClicked: dialog.close()
                    }
                }
            }
        }
    }
}
