import QtQuick
import QtQuick.Templates as T
import Navorin

T.MenuItem {
    id: item

    property string symbol
    property bool isDestructive: false
    readonly property color ink: isDestructive ? Theme.live : "white"

    implicitWidth: (symbol === "" ? 0 : 30) + Math.ceil(metrics.advanceWidth) + 30
    implicitHeight: Theme.grown(40, 22)
    opacity: enabled ? 1 : 0.4
    Accessible.role: Accessible.MenuItem
    Accessible.name: text
    Accessible.onPressAction: if (enabled) {
        triggered()
        if (menu)
            menu.dismiss()
    }

    background: Rectangle {
        radius: 10
        color: item.highlighted ? Theme.white(0.09) : "transparent"
    }
    component Words: Item {
        property string text
        property string symbol
        property color ink

        Icon {
            id: glyph
            anchors.left: parent.left
            anchors.leftMargin: 12
            anchors.verticalCenter: parent.verticalCenter
            visible: parent.symbol !== ""
            symbol: parent.symbol
            size: 20
            color: parent.ink
        }
        NText {
            readonly property bool isAlone: parent.symbol === ""

            anchors.left: isAlone ? parent.left : glyph.right
            anchors.leftMargin: isAlone ? 14 : 10
            anchors.right: parent.right
            anchors.rightMargin: 14
            anchors.verticalCenter: parent.verticalCenter
            text: parent.text
            color: parent.ink
        }
    }
    contentItem: Words {
        text: item.text
        symbol: item.symbol
        ink: item.ink
    }

    TextMetrics {
        id: metrics
        font.family: Theme.ownFamily
        font.pixelSize: Theme.rowTitle.size
        font.weight: Theme.rowTitle.weight
        text: item.text
    }
}
