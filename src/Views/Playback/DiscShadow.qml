import QtQuick

// The shadow of a disc that fills this item.
Item {
    id: shadow

    property real strength: 0.6
    // How far it shows beyond the disc, and how far down it falls.
    property real reach: 18
    property real drop: 8

    ShaderEffect {
        readonly property color tone: "black"
        readonly property real strength: shadow.strength

        x: -2.2 * shadow.reach
        y: x + shadow.drop
        width: shadow.width - 2 * x
        height: width
        fragmentShader: "qrc:/navorin/shaders/Halo.frag.qsb"
    }
}
