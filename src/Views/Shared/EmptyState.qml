import QtQuick
import Navorin

// What stands where there is nothing to show: a disc with a symbol in a soft light, and words below.
Column {
    id: empty

    required property string symbol
    property real symbolSize: 40
    // Above the message, in larger letters; empty for none.
    property string title
    property string message
    default property alias actions: below.data

    spacing: 20

    Item {
        anchors.horizontalCenter: parent.horizontalCenter
        width: 96
        height: 96

        ShaderEffect {
            readonly property color tone: Theme.accent
            readonly property real strength: 0.2

            anchors.centerIn: parent
            width: 340
            height: 340
            fragmentShader: "qrc:/navorin/shaders/Halo.frag.qsb"
        }
        Rectangle {
            anchors.fill: parent
            radius: width / 2
            color: Theme.panelFill
            border.width: 1
            border.color: Theme.hairline
        }
        Icon {
            anchors.centerIn: parent
            symbol: empty.symbol
            size: empty.symbolSize
            opacity: 0.4
        }
    }
    Column {
        anchors.horizontalCenter: parent.horizontalCenter
        width: empty.width
        spacing: 6

        NText {
            width: parent.width
            visible: text !== ""
            text: empty.title
            role: Theme.section
            color: Theme.white(0.85)
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
            Accessible.role: Accessible.Heading
            Accessible.name: text
        }
        NText {
            width: parent.width
            text: empty.message
            role: Theme.caption
            color: Theme.white(0.6)
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
            maximumLineCount: 6
            Accessible.role: Accessible.AlertMessage
            Accessible.name: text
        }
    }
    Item {
        id: below
        anchors.horizontalCenter: parent.horizontalCenter
        width: childrenRect.width
        height: childrenRect.height
    }
}
