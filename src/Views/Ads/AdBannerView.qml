import QtQuick
import Navorin

// The frame of one advertisement. The web view behind it is made when it first shows, and goes with it.
Rectangle {
    id: banner

    readonly property AdBannerViewState ads: AdBannerViewState {}
    readonly property real cornerRadius: 16

    color: Theme.white(0.04)
    radius: cornerRadius
    border.width: 0.8
    border.color: Theme.white(0.08)
    Accessible.role: Accessible.Pane
    Accessible.name: "تبلیغ"

    // By its address, not by its type: the web engine is loaded with the first banner and not with the program.
    Loader {
        id: view
        anchors.fill: parent
        anchors.margins: 1
        active: banner.ads.isConfigured && banner.visible
        asynchronous: true
        source: "AdWebView.qml"
        onLoaded: {
            item.ads = banner.ads
            item.show()
        }
        layer.enabled: true
        layer.effect: ShaderEffect {
            readonly property size extent: Qt.size(width, height)
            readonly property real radius: banner.cornerRadius - 1
            fragmentShader: "qrc:/navorin/shaders/RoundCorners.frag.qsb"
        }
    }
}
