import QtQuick
import QtQuick.Templates as T
import Navorin

// A line to type in, with a symbol on its leading side. What is typed keeps its own direction and digits.
T.TextField {
    id: field

    required property string symbol
    property bool isSecret: false

    implicitHeight: Theme.grown(48, 24)
    leftPadding: 16
    rightPadding: 48 // the leading side
    font.family: Theme.outsideFamily
    font.pixelSize: Theme.button.size
    color: "white"
    selectionColor: Theme.accent
    selectedTextColor: "white"
    placeholderTextColor: Theme.white(0.45)
    verticalAlignment: TextInput.AlignVCenter
    horizontalAlignment: TextInput.AlignLeft
    echoMode: isSecret ? TextInput.Password : TextInput.Normal
    inputMethodHints: isSecret ? Qt.ImhSensitiveData | Qt.ImhNoPredictiveText | Qt.ImhNoAutoUppercase : Qt.ImhNone
    selectByMouse: true
    Accessible.role: Accessible.EditableText
    Accessible.name: placeholderText
    Accessible.passwordEdit: isSecret
    Accessible.description: isSecret ? placeholderText : "" // the name of a secret field is not passed on

    background: Rectangle {
        radius: Theme.codeBoxRadius
        color: Theme.panelFill
        border.width: field.activeFocus ? 2 : 1
        border.color: field.activeFocus ? Theme.accent : Theme.hairline
    }
    Icon {
        x: parent.width - width - 14
        anchors.verticalCenter: parent.verticalCenter
        symbol: field.symbol
        size: 22
        opacity: 0.6
    }
    NText {
        x: field.leftPadding
        width: field.width - field.leftPadding - field.rightPadding
        anchors.verticalCenter: parent.verticalCenter
        text: field.placeholderText
        role: Theme.caption
        color: field.placeholderTextColor
        visible: field.text === "" && field.preeditText === ""
        Accessible.ignored: true
    }
}
