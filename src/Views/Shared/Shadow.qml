import QtQuick
import Navorin

// The shadow of a rounded box that fills the parent; one bitmap for each elevation.
BorderImage {
    id: shadow

    required property int radius
    property int blur: 16
    property int drop: 6
    // Set for a box too low for nine slices.
    property int boxHeight: 0
    readonly property int reach: ThemeFunctions.shadowReach(blur)
    readonly property int slice: ThemeFunctions.shadowBorder(radius, blur)

    anchors.fill: parent
    anchors.margins: -reach
    anchors.topMargin: -reach + drop
    anchors.bottomMargin: -reach - drop
    border.left: slice
    border.right: slice
    border.top: boxHeight > 0 ? 0 : slice
    border.bottom: boxHeight > 0 ? 0 : slice
    source: "image://shadow/" + radius + "/" + blur + (boxHeight > 0 ? "/" + boxHeight : "")
}
