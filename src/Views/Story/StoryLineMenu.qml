import QtQuick
import QtQuick.Templates as T
import Navorin

// A button that says which line is chosen, and the list of all lines behind it.
ScaleButtonStyle {
    id: button

    required property string title
    required property string chosen
    required property var rows
    required property int index

    signal picked(row: int)

    height: Theme.grown(64, 42)
    radius: Theme.artRadius
    text: title + "، " + chosen
    Accessible.role: Accessible.ButtonMenu
    onClicked: list.open()

    background: Rectangle {
        radius: button.radius
        color: button.down ? Theme.white(0.05) : Theme.white(0.08 + 0.06 * button.glow)
    }
    NText {
        id: caption
        anchors.left: parent.left
        anchors.leftMargin: 16
        y: 9
        text: button.title
        role: Theme.smallCaption
        color: Theme.white(0.6)
    }
    NText {
        anchors.left: parent.left
        anchors.leftMargin: 16
        anchors.right: arrow.left
        anchors.rightMargin: 4
        anchors.top: caption.bottom
        anchors.topMargin: 2
        text: button.chosen
        role: Theme.rowTitle
        isOutside: true
    }
    Icon {
        id: arrow
        anchors.right: parent.right
        anchors.rightMargin: 14
        anchors.verticalCenter: parent.verticalCenter
        symbol: "chevron.down"
        size: 20
        opacity: 0.6
    }

    component Lines: ListView {
        id: lines

        property int chosen: -1

        signal taken(row: int)

        LayoutMirroring.enabled: true
        LayoutMirroring.childrenInherit: true
        clip: contentHeight > height
        interactive: contentHeight > height
        boundsBehavior: Flickable.StopAtBounds
        highlightMoveDuration: 0
        focus: true
        reuseItems: true
        keyNavigationEnabled: true
        Accessible.role: Accessible.PopupMenu
        Keys.onReturnPressed: taken(currentIndex)
        Keys.onEnterPressed: taken(currentIndex)
        Keys.onSpacePressed: taken(currentIndex)

        // Said aloud: within a component of this kind it is not understood otherwise.
        delegate: Component {
            StoryLineRow {
                required property int index
                required property string modelData

                width: lines.width
                text: modelData
                isChosen: index === lines.chosen
                onClicked: lines.taken(index)
            }
        }
    }
    T.Popup {
        id: list
        y: button.height + 6
        width: button.width
        height: Math.min(340, button.rows.length * Theme.grown(40, 22) + 2 * padding)
        padding: 6
        margins: 8
        focus: true
        enter: Transition { NumberAnimation { property: "opacity"; from: 0; to: 1; duration: 120 } }
        exit: Transition { NumberAnimation { property: "opacity"; to: 0; duration: 100 } }
        // Only now: a list that is given its rows begins anew at the first.
        onOpened: {
            const lines = contentItem as ListView
            lines.currentIndex = button.index
            lines.positionViewAtIndex(button.index, ListView.Center)
        }

        background: Rectangle {
            radius: Theme.artRadius
            color: "#202026"
            border.width: 1
            border.color: Theme.white(0.12)

            Shadow {
                anchors.fill: parent
                z: -1
                radius: Theme.artRadius
                blur: 36
                drop: 14
                opacity: 0.6
            }
        }
        PopupName {
            content: list.contentItem
            name: button.title
        }
        contentItem: Lines {
            model: list.visible ? button.rows : []
            chosen: button.index
            onTaken: row => {
                list.close()
                button.picked(row)
            }
        }
    }
}
