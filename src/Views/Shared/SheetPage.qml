import QtQuick
import Navorin

// A sheet's bar and, below it, what scrolls when the window is too low for it.
FocusScope {
    id: page

    property string title
    // The round button of the leading side, where there is a way back.
    property bool canGoBack: false
    // Content of the column below the bar.
    default property alias content: column.data
    property real spacing: 12
    property alias contentOpacity: column.opacity

    signal backRequested
    signal closeRequested

    focus: true
    implicitHeight: bar.height + column.height + 32
    Accessible.role: Accessible.Dialog
    Accessible.name: title

    Item {
        id: bar
        width: parent.width
        height: 60

        NText {
            anchors.centerIn: parent
            width: Math.min(implicitWidth, parent.width - 180)
            text: page.title
            role: Theme.section
            Accessible.role: Accessible.Heading
            Accessible.name: text
        }
        RoundButton {
            x: page.canGoBack ? parent.width - width - 12 : -width
            anchors.verticalCenter: parent.verticalCenter
            visible: page.canGoBack
            symbol: "chevron.right"
            text: "بازگشت"
            size: 36
            onClicked: page.backRequested()
        }
        TextButton {
            // On the leading side while it is the only one there.
            x: page.canGoBack ? 12 : parent.width - width - 12
            anchors.verticalCenter: parent.verticalCenter
            text: "بستن"
            onClicked: page.closeRequested()
        }
    }
    Flickable {
        anchors.top: bar.bottom
        width: parent.width
        height: parent.height - bar.height
        contentHeight: column.height + 32
        boundsBehavior: Flickable.StopAtBounds
        interactive: contentHeight > height
        clip: interactive

        Column {
            id: column
            x: 32
            width: parent.width - 2 * x
            spacing: page.spacing
        }
    }
}
