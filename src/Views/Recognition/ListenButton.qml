import QtQuick
import Navorin

// The disc that is pressed to listen, and what moves around it meanwhile.
FocusScope {
    id: area

    required property bool isListening
    required property bool isProcessing
    readonly property bool isBusy: isListening || isProcessing

    signal clicked

    implicitHeight: 250

    component Ring: Rectangle {
        id: ring

        required property int index

        anchors.centerIn: parent
        width: 132
        height: 132
        radius: width / 2
        color: "transparent"
        border.width: 2.5
        border.color: Qt.rgba(Theme.accent.r, Theme.accent.g, Theme.accent.b, 0.45)
        antialiasing: true
        opacity: 0.85

        SequentialAnimation {
            running: ring.visible && Stage.isSeen && !Stage.reducedMotion

            PauseAnimation { duration: 450 * ring.index }
            ParallelAnimation {
                loops: Animation.Infinite

                NumberAnimation { target: ring; property: "scale"; from: 1; to: 1.75; duration: 1400; easing.type: Easing.OutQuad }
                NumberAnimation { target: ring; property: "opacity"; from: 0.85; to: 0; duration: 1400; easing.type: Easing.OutQuad }
            }
        }
    }

    // Made anew with each snippet, so that the rings set out one after the other.
    Loader {
        anchors.fill: parent
        active: area.isListening
        sourceComponent: Item {
            Ring { index: 0 }
            Ring { index: 1 }
            Ring { index: 2 }
        }
    }
    Rectangle {
        anchors.centerIn: parent
        width: 146
        height: 146
        radius: width / 2
        visible: !area.isBusy
        color: "transparent"
        border.width: 1
        border.color: Theme.white(0.12)
        antialiasing: true
    }
    ShaderEffect {
        readonly property color tone: Theme.accent
        readonly property real strength: 0.5

        anchors.centerIn: parent
        width: 232
        height: 232
        visible: !area.isBusy
        fragmentShader: "qrc:/navorin/shaders/Halo.frag.qsb"
    }
    ScaleButtonStyle {
        anchors.centerIn: parent
        width: 116
        height: 116
        radius: 58
        focus: true
        enabled: !area.isBusy
        text: "تشخیص آهنگ"
        onClicked: area.clicked()

        background: Rectangle {
            radius: 58
            antialiasing: true
            gradient: Gradient {
                GradientStop { position: 0; color: area.isBusy ? Qt.rgba(0.56, 0.56, 0.58, 0.5) : Theme.accent }
                GradientStop { position: 1; color: area.isBusy ? Qt.rgba(0.56, 0.56, 0.58, 0.35) : Theme.violet }
            }
        }
        Icon {
            anchors.centerIn: parent
            visible: !area.isProcessing
            symbol: "mic.fill"
            size: 44
        }
        Spinner {
            anchors.centerIn: parent
            size: 36
            running: area.isProcessing
        }
    }
}
