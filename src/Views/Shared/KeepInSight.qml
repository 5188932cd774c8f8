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

    function holds(item: Item): bool {
        let each = item
        while (each !== null && each !== view.contentItem)
            each = each.parent
        return each !== null
    }
    // Also for what lies deeper in it.
    function reveal(item: Item) {
        const place = view.contentItem.mapFromItem(item, 0, 0, item.width, item.height)
        const lowest = Math.max(0, place.y - below)
        const highest = place.y + place.height + below - view.height
        to = Math.max(0, Math.min(lowest, Math.max(highest, view.contentY)))
        restart()
    }

    target: view
    property: "contentY"
    duration: Theme.motionTime(180)
    easing.type: Easing.OutQuad
}
