import QtQuick
import QtQuick.Controls
import Navorin

// A tab's screens, one upon the other. A screen that asks to go back is taken off; the one below keeps its state.
StackView {
    id: stack

    // What screens pushed here get: the distance from the sides.
    required property real margin

    Accessible.ignored: true // each screen says what it is

    function open(screen: Component, properties: var) {
        const item = push(screen, Object.assign({edge: Qt.binding(() => stack.margin)}, properties || {}))
        item.backRequested.connect(stack.back)
        item.forceActiveFocus()
    }
    function back() {
        if (depth < 2)
            return
        pop()
        currentItem.forceActiveFocus()
    }

    Shortcut {
        sequences: ["Escape", StandardKey.Back]
        enabled: stack.enabled && stack.visible && stack.depth > 1
        onActivated: stack.back()
    }

    // Screens come from the side that reading goes to, and leave there again.
    pushEnter: Transition {
        SpringMotion { property: "x"; from: -48; to: 0 }
        NumberAnimation { property: "opacity"; from: 0; to: 1; duration: 180 }
    }
    pushExit: Transition { NumberAnimation { property: "opacity"; from: 1; to: 0; duration: 120 } }
    popEnter: Transition { NumberAnimation { property: "opacity"; from: 0; to: 1; duration: 180 } }
    popExit: Transition {
        NumberAnimation { property: "x"; to: -48; duration: Theme.motionTime(160); easing.type: Easing.InQuad }
        NumberAnimation { property: "opacity"; from: 1; to: 0; duration: 160 }
    }
}
