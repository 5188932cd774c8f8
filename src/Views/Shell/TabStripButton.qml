import QtQuick
import Navorin

ScaleButtonStyle {
    id: tab

    required property string symbol
    required property bool isSelected
    // The label stands beside the symbol, not below it.
    required property bool isBeside

    radius: Theme.artRadius
    Accessible.selectable: true
    Accessible.selected: isSelected

    // Placed from the right by hand: anchors that change with the layout would leave stretched symbols behind.
    Item {
        anchors.fill: parent

        Rectangle {
            id: pill
            x: (parent.width - width) / 2
            y: tab.isBeside ? 0 : 4
            width: tab.isBeside ? parent.width : 56
            height: tab.isBeside ? parent.height : Math.min(32, tab.height - Theme.smallCaption.line - 12)
            radius: tab.isBeside ? Theme.artRadius : height / 2
            color: tab.isSelected ? Theme.selected : Theme.white(0.06 * tab.glow)

            Behavior on color { ColorAnimation { duration: Theme.hoverTime } }
        }
        Icon {
            id: icon
            x: tab.isBeside ? parent.width - width - 14 : (parent.width - width) / 2
            y: pill.y + (pill.height - height) / 2
            symbol: tab.symbol
            size: 22
            opacity: tab.isSelected ? 1 : 0.65 + 0.25 * tab.glow
        }
        NText {
            x: tab.isBeside ? 14 : 0
            y: tab.isBeside ? (parent.height - height) / 2 : pill.y + pill.height + 2
            width: tab.isBeside ? icon.x - 12 - x : parent.width
            text: tab.text
            role: tab.isBeside ? Theme.rowTitle : Theme.smallCaption
            font.weight: Font.DemiBold
            horizontalAlignment: tab.isBeside ? Text.AlignLeft : Text.AlignHCenter
            opacity: tab.isSelected ? 1 : 0.65 + 0.25 * tab.glow
        }
    }
}
