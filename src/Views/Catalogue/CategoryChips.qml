import QtQuick
import Navorin

// One stop for the tab key; arrows walk the chips, as in a group of radio buttons.
ListView {
    id: chips

    required property HomeViewState home

    implicitHeight: Theme.grown(36, 22)
    orientation: ListView.Horizontal
    spacing: 8
    interactive: contentWidth > width
    boundsBehavior: Flickable.StopAtBounds
    activeFocusOnTab: true
    keyNavigationEnabled: true
    model: home.categories
    currentIndex: home.selectedCategory
    Accessible.role: Accessible.List
    Accessible.name: "دسته‌ها"

    delegate: ScaleButtonStyle {
        id: chip

        required property int index
        required property string modelData
        readonly property bool isSelected: chips.home.selectedCategory === index

        function choose() {
            chips.home.selectedCategory = index
        }

        text: modelData
        radius: height / 2
        height: chips.height
        leftPadding: 16
        rightPadding: 16
        focusPolicy: Qt.ClickFocus
        Accessible.selectable: true
        Accessible.selected: isSelected
        onClicked: choose()

        background: Rectangle {
            radius: chip.radius
            color: chip.isSelected ? Theme.selected : Theme.white(0.07 + 0.06 * chip.glow)

            Behavior on color { ColorAnimation { duration: Theme.hoverTime } }

            Rectangle {
                anchors.fill: parent
                radius: chip.radius
                color: chip.down ? Theme.black(0.14) : Theme.white(chip.isSelected ? 0.06 * chip.glow : 0)
            }
        }
        contentItem: NText {
            text: chip.text
            role: Theme.caption
            font.weight: Font.DemiBold
            color: Theme.white(chip.isSelected ? 1 : 0.65 + 0.25 * chip.glow)
        }
    }
}
