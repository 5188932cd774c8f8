import QtQuick
import Navorin

// A text in one of the theme's roles: leading alignment of its own, never richer than plain, cut when too long.
Text {
    property var role: Theme.rowTitle
    // Comes from the backend or the user: its digits stay as they are.
    property bool isOutside: false

    font.family: isOutside ? Theme.outsideFamily : Theme.ownFamily
    font.pixelSize: role.size
    font.weight: role.weight
    color: "white"
    textFormat: Text.PlainText
    horizontalAlignment: Text.AlignLeft
    verticalAlignment: Text.AlignVCenter
    elide: Text.ElideRight
    height: wrapMode === Text.NoWrap ? role.line : implicitHeight
    lineHeightMode: wrapMode === Text.NoWrap ? Text.ProportionalHeight : Text.FixedHeight
    lineHeight: wrapMode === Text.NoWrap ? 1 : role.line
}
