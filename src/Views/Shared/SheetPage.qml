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
    Accessible.ignored: true // the sheet around it bears its name
    Accessible.name: title

    Item {
        id: bar
        width: parent.width
        height: Theme.grown(60, 28)

        NText {
            anchors.centerIn: parent
            width: Math.min(implicitWidth, parent.width - 2 * Math.max(90, close.width + 20))
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
            id: close
            // On the leading side while it is the only one there.
            x: page.canGoBack ? 12 : parent.width - width - 12
            anchors.verticalCenter: parent.verticalCenter
            text: "بستن"
            onClicked: page.closeRequested()
        }
    }
    SheetScroll {
        anchors.top: bar.bottom
        width: parent.width
        height: parent.height - bar.height
        contentHeight: column.height + 32

        Column {
            id: column
            x: 32
            width: parent.width - 2 * x
            spacing: page.spacing
        }
    }
}
