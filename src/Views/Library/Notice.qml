import QtQuick
import Navorin

// A line of feedback: good news in green, a failure in red.
NText {
    property bool isFailure: false

    role: Theme.caption
    isOutside: true
    color: isFailure ? Qt.lighter(Theme.live, 1.2) : Theme.success
    wrapMode: Text.Wrap
    maximumLineCount: 4
    visible: text !== ""
    Accessible.role: Accessible.AlertMessage
    Accessible.name: text
}
