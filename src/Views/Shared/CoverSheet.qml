import QtQuick
import QtQuick.Templates as T
import Navorin

// A screen over the whole window that slides up from below. It takes the keyboard until it closes, and gives it back to
// where it was. Its content is made anew at each opening.
T.Popup {
    id: cover

    property Component screen
    property string title: shown === null ? "" : shown.Accessible.name
    readonly property Item shown: (contentItem as Loader).item as Item
    // 0 away, 1 in its place.
    property real presence: 0
    // Nothing of what lies behind can be seen.
    readonly property bool isOpaque: opened && presence > 0.999

    parent: T.Overlay.overlay
    modal: true
    dim: false
    focus: true
    padding: 0
    closePolicy: T.Popup.CloseOnEscape
    width: parent === null ? 0 : parent.width
    height: parent === null ? 0 : parent.height
    y: Math.round(height * (1 - Math.min(1, presence)))

    enter: Transition { SpringMotion { property: "presence"; from: 0; to: 1 } }
    exit: Transition { NumberAnimation { property: "presence"; to: 0; duration: Theme.motionTime(220); easing.type: Easing.OutQuad } }

    background: null
    contentItem: Loader {
        LayoutMirroring.enabled: true
        LayoutMirroring.childrenInherit: true
        focus: true
        active: cover.visible
        sourceComponent: cover.screen
    }
    PopupName {
        content: cover.contentItem
        name: cover.title
    }
}
