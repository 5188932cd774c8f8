import QtQuick
import Navorin

// The light behind the whole window: a wash and a glow in the artwork's colour under a veil that keeps texts
// readable, in one opaque layer. Without a scene graph that runs shaders, a plain gradient stands in.
Item {
    id: backdrop

    property color tone: Theme.background
    // 0 is the plain background, 1 the full light.
    property real light: 0
    readonly property real veil: ThemeFunctions.veil(tone)
    readonly property bool hasShaders: GraphicsInfo.api !== GraphicsInfo.Software
                                       && GraphicsInfo.api !== GraphicsInfo.Unknown

    function washed(opacity: real): color {
        return ThemeFunctions.blend(Theme.background, tone, opacity * (1 - veil) * light)
    }

    Rectangle {
        anchors.fill: parent
        visible: !backdrop.hasShaders
        gradient: Gradient {
            GradientStop { position: 0; color: backdrop.washed(0.55) }
            GradientStop { position: 0.5; color: backdrop.washed(0.25) }
            GradientStop { position: 1; color: backdrop.washed(0.20) }
        }
    }
    Loader {
        anchors.fill: parent
        active: backdrop.hasShaders

        // Kept in a texture: what moves above it does not make it compute its light again.
        sourceComponent: ShaderEffect {
            readonly property color tone: backdrop.tone
            readonly property color ground: Theme.background
            readonly property real veil: backdrop.veil
            readonly property real light: backdrop.light
            readonly property size extent: Qt.size(width, height)

            blending: false
            layer.enabled: true
            fragmentShader: "qrc:/navorin/shaders/Backdrop.frag.qsb"
        }
    }
}
