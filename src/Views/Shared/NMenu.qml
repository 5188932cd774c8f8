import QtQuick
import QtQuick.Templates as T
import Navorin

// A context menu. Its words begin at the right, as everything else does.
T.Menu {
    id: menu

    title: "گزینهها"
    implicitWidth: Math.max(200, contentItem.implicitWidth + leftPadding + rightPadding)
    implicitHeight: contentHeight + topPadding + bottomPadding
    padding: 6
    margins: 8
    overlap: 1
    transformOrigin: Item.TopRight

    enter: Transition {
        NumberAnimation { property: "opacity"; from: 0; to: 1; duration: 120 }
        SpringMotion { property: "scale"; from: 0.94; to: 1 }
    }
    exit: Transition { NumberAnimation { property: "opacity"; to: 0; duration: 100 } }

    delegate: NMenuItem {}
    contentItem: ListView {
        LayoutMirroring.enabled: true
        LayoutMirroring.childrenInherit: true
        implicitHeight: contentHeight
        implicitWidth: {
            let widest = 0
            for (let i = 0; i < menu.count; ++i)
                widest = Math.max(widest, menu.itemAt(i).implicitWidth)
            return widest
        }
        model: menu.contentModel
        currentIndex: menu.currentIndex
        interactive: contentHeight > height
        clip: interactive
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
        content: menu.contentItem
        name: menu.title
    }
}
