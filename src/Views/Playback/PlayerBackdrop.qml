import QtQuick
import Navorin

// The full player's room: dark, with a lamp in the artwork's colour behind the record. One opaque layer, drawn
// anew only when the colour or the size changes.
Item {
    id: backdrop

    required property color tone
    required property point lamp
    required property real reach
    readonly property bool hasShaders: GraphicsInfo.api !== GraphicsInfo.Software
                                       && GraphicsInfo.api !== GraphicsInfo.Unknown

    Rectangle {
        anchors.fill: parent
        visible: !backdrop.hasShaders
        gradient: Gradient {
            GradientStop { position: 0; color: ThemeFunctions.blend(Theme.background, backdrop.tone, 0.2) }
            GradientStop { position: 0.5; color: ThemeFunctions.blend(Theme.background, backdrop.tone, 0.3) }
            GradientStop { position: 1; color: ThemeFunctions.blend(Theme.background, backdrop.tone, 0.08) }
        }
    }
    Loader {
        anchors.fill: parent
        active: backdrop.hasShaders

        sourceComponent: ShaderEffect {
            readonly property color tone: backdrop.tone
            readonly property color glow: ThemeFunctions.glow(backdrop.tone)
            readonly property color ground: Theme.background
            readonly property real veil: ThemeFunctions.veil(backdrop.tone)
            readonly property point lamp: backdrop.lamp
            readonly property real reach: Math.max(1, backdrop.reach)
            readonly property size extent: Qt.size(width, height)

            blending: false
            layer.enabled: true
            fragmentShader: "qrc:/navorin/shaders/PlayerLight.frag.qsb"
        }
    }
}
