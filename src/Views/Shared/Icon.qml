import QtQuick
import Navorin

// A system symbol by its name, sharp at any scale of the screen.
Image {
    id: icon

    required property string symbol
    property real size: 24
    property color color: "white"

    width: size
    height: size
    sourceSize.width: size
    sourceSize.height: size
    source: ThemeFunctions.symbolAddress(symbol, color)
    smooth: true
}
