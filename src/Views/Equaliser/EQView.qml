import QtQuick
import Navorin

FocusScope {
    id: page

    readonly property EQViewState eq: EQViewState {}

    signal closeRequested

    focus: true
    implicitHeight: column.height + 58
    Accessible.ignored: true // the sheet around it bears its name
    Accessible.name: "اکولایزر"

    Rectangle {
        anchors.horizontalCenter: parent.horizontalCenter
        y: 10
        width: 36
        height: 5
        radius: 2.5
        color: Theme.white(0.25)
    }
    SheetScroll {
        y: 34
        width: parent.width
        height: parent.height - y
        contentHeight: column.height + 24

        Column {
            id: column
            x: 28
            width: parent.width - 2 * x
            spacing: 16

            Item {
                width: parent.width
                height: Theme.grown(44, 32)

                Icon {
                    id: glyph
                    anchors.left: parent.left
                    anchors.verticalCenter: parent.verticalCenter
                    symbol: "slider.horizontal.3"
                    size: 24
                }
                NText {
                    anchors.left: glyph.right
                    anchors.leftMargin: 12
                    anchors.right: power.left
                    anchors.verticalCenter: parent.verticalCenter
                    text: "اکولایزر"
                    role: Theme.sheetTitle
                    Accessible.role: Accessible.Heading
                    Accessible.name: text
                }
                NSwitch {
                    id: power
                    anchors.right: parent.right
                    anchors.verticalCenter: parent.verticalCenter
                    text: "اکولایزر"
                    focus: true
                    checked: page.eq.enabled
                    onToggled: page.eq.enabled = checked
                }
            }
            ScaleButtonStyle {
                id: menuButton
                width: parent.width
                height: Theme.grown(48, 24)
                radius: Theme.artRadius
                text: page.eq.presetLabel
                Accessible.role: Accessible.ButtonMenu
                onClicked: presets.open()

                background: Rectangle {
                    radius: menuButton.radius
                    color: menuButton.down ? Theme.white(0.05) : Theme.white(0.08 + 0.06 * menuButton.glow)
                }
                Item {
                    anchors.fill: parent
                    anchors.leftMargin: 16
                    anchors.rightMargin: 14

                    NText {
                        anchors.left: parent.left
                        anchors.right: arrow.left
                        anchors.verticalCenter: parent.verticalCenter
                        text: menuButton.text
                        role: Theme.button
                    }
                    Icon {
                        id: arrow
                        anchors.right: parent.right
                        anchors.verticalCenter: parent.verticalCenter
                        symbol: "chevron.down"
                        size: 22
                        opacity: 0.7
                    }
                }
                NMenu {
                    id: presets
                    title: menuButton.text
                    y: menuButton.height + 6
                    width: menuButton.width

                    Instantiator {
                        model: page.eq.presetNames
                        delegate: NMenuItem {
                            required property int index
                            required property string modelData

                            text: modelData
                            symbol: modelData === page.eq.selectedPreset ? "checkmark" : ""
                            onTriggered: page.eq.choosePreset(index)
                        }
                        onObjectAdded: (index, object) => presets.insertItem(index, object)
                        onObjectRemoved: (index, object) => presets.removeItem(object)
                    }
                }
            }
            Column {
                width: parent.width
                spacing: 8

                Repeater {
                    model: page.eq.bandLabels
                    delegate: EQBandRow {
                        width: parent.width
                        eq: page.eq
                    }
                }
            }
            NText {
                width: parent.width
                text: page.eq.shownFooter
                role: Theme.smallCaption
                isOutside: true
                color: Theme.white(0.45)
                wrapMode: Text.Wrap
                Accessible.role: Accessible.StaticText
                Accessible.name: page.eq.footer
            }
        }
    }
}
