import QtQuick
import Navorin

// What a sheet holds, scrolling when the window is too low for it; whatever the keyboard comes to is brought in sight.
Flickable {
    id: view

    // Where the keyboard is, if in here.
    readonly property Item focused: keeper.holds(Window.activeFocusItem) ? Window.activeFocusItem : null

    boundsBehavior: Flickable.StopAtBounds
    interactive: contentHeight > height
    clip: interactive
    onFocusedChanged: if (focused !== null && interactive && Stage.keyboardSteers) keeper.reveal(focused)

    KeepInSight {
        id: keeper
        view: view
        below: 12
    }
}
