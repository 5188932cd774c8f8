import QtQuick
import Navorin

// Scrolls `view` gently until `item` is clear of what lies over its ends.
NumberAnimation {
    id: scroll

    required property Flickable view
    property real below: 24

    function show(item: Item, itemAbove: real) {
        const lowest = item.y - itemAbove
        const highest = item.y + item.height + scroll.below - view.height
        to = Math.min(lowest, Math.max(highest, view.contentY))
        restart()
    }

    target: view
    property: "contentY"
    duration: 180
    easing.type: Easing.OutQuad
}
