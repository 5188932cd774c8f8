import QtQuick
import QtQuick.Templates as T
import Navorin

T.MenuItem {
    id: item

    property string symbol
    property bool isDestructive: false
    readonly property color ink: isDestructive ? Theme.live : "white"

    implicitWidth: (symbol === "" ? 0 : 30) + label.implicitWidth + 28
    implicitHeight: 40
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
    contentItem: Item {
        Icon {
            id: glyph
            anchors.left: parent.left
            anchors.leftMargin: 12
            anchors.verticalCenter: parent.verticalCenter
            visible: item.symbol !== ""
            symbol: item.symbol
            size: 20
            color: item.ink
        }
        NText {
            id: label
            anchors.left: item.symbol === "" ? parent.left : glyph.right
            anchors.leftMargin: item.symbol === "" ? 14 : 10
            anchors.right: parent.right
            anchors.rightMargin: 14
            anchors.verticalCenter: parent.verticalCenter
            text: item.text
            color: item.ink
        }
    }
}
