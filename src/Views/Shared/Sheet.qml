import QtQuick
import QtQuick.Templates as T
import Navorin

// A screen above the others: a dialog in the middle, or docked at the bottom of a narrow window. It takes the
// keyboard until it closes, and gives it back to where it was. Its content is made anew at each opening.
T.Popup {
    id: sheet

    property Component screen
    property string title: shown === null ? "" : shown.Accessible.name
    property real sheetWidth: 440
    readonly property bool isDocked: parent !== null && parent.width < Theme.mediumFrom
    readonly property Item shown: (contentItem as Loader).item as Item
    // 0 away, 1 in its place.
    property real presence: 0

    function present(what: Component) {
        screen = what
        open()
    }

    parent: T.Overlay.overlay
    modal: true
    focus: true
    dim: true
    padding: 0
    closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutside
    width: parent === null ? sheetWidth : isDocked ? parent.width : Math.min(sheetWidth, parent.width - 48)
    height: parent === null ? 0
                            : Math.min(shown === null ? 0 : shown.implicitHeight, parent.height - (isDocked ? 48 : 32))
    x: parent === null ? 0 : Math.round((parent.width - width) / 2)
    y: parent === null ? 0 : isDocked ? parent.height - height * Math.min(1, presence)
                                      : Math.round((parent.height - height) / 2 + 16 * (1 - presence))
    opacity: isDocked ? 1 : Math.min(1, presence)

    // Steps and complaints change what a sheet holds.
    Behavior on height {
        enabled: sheet.opened
        NumberAnimation { duration: Theme.motionTime(250); easing.type: Easing.InOutQuad }
    }
    enter: Transition { SpringMotion { property: "presence"; from: 0; to: 1 } }
    exit: Transition { NumberAnimation { property: "presence"; to: 0; duration: Theme.motionTime(200); easing.type: Easing.OutQuad } }

    T.Overlay.modal: Rectangle {
        color: Theme.black(0.58)

        Behavior on opacity { NumberAnimation { duration: 200 } }
    }
    background: Item {
        Shadow {
            anchors.fill: parent
            radius: Theme.sheetRadius
            blur: 36
            drop: 14
            opacity: 0.8
        }
        Rectangle {
            anchors.fill: parent
            anchors.bottomMargin: sheet.isDocked ? -Theme.sheetRadius : 0
            radius: Theme.sheetRadius
            border.width: 1
            border.color: Theme.hairline
            gradient: Gradient {
                GradientStop { position: 0; color: ThemeFunctions.blend(Theme.sheet, Theme.accent, 0.14) }
                GradientStop { position: 0.5; color: Theme.sheet }
            }
        }
    }
    contentItem: Loader {
        LayoutMirroring.enabled: true
        LayoutMirroring.childrenInherit: true
        focus: true
        active: sheet.visible
        sourceComponent: sheet.screen
    }
    PopupName {
        content: sheet.contentItem
        name: sheet.title
    }
}
