import QtQuick
import QtQuick.Templates as T
import Navorin

// One line in the list of a StoryLineMenu.
T.ItemDelegate {
    id: row

    property bool isChosen: false

    height: Theme.grown(40, 22)
    highlighted: ListView.isCurrentItem
    hoverEnabled: true
    Accessible.role: Accessible.MenuItem
    Accessible.name: text
    Accessible.onPressAction: clicked()

    background: Rectangle {
        radius: 10
        color: row.highlighted || row.hovered ? Theme.white(0.09) : "transparent"
    }
    NText {
        anchors.fill: parent
        anchors.leftMargin: 14
        anchors.rightMargin: 14
        text: row.text
        isOutside: true
        color: row.isChosen ? "white" : Theme.white(0.75)
    }
}
