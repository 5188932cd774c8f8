import QtQuick

// What assistive technology calls a popup, which takes no name itself: the item that it lies in does.
Binding {
    required property Item content
    required property string name
    readonly property Item outer: content.parent

    target: outer === null ? null : outer.Accessible
    property: "name"
    value: name
}
