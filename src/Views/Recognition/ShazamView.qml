import QtQuick
import Navorin

// What song is this: one button to listen, and what came of it.
SheetPage {
    id: sheet

    readonly property ShazamViewState shazam: ShazamViewState {
        onFinished: sheet.closeRequested()
    }

    title: "تشخیص آهنگ"

    ListenButton {
        width: parent.width
        focus: true
        isListening: sheet.shazam.isListening
        isProcessing: sheet.shazam.isProcessing
        onClicked: sheet.shazam.listen()
    }
    NText {
        width: parent.width
        text: sheet.shazam.statusText
        role: Theme.section
        font.weight: Font.Medium
        horizontalAlignment: Text.AlignHCenter
        wrapMode: Text.Wrap
        maximumLineCount: 4
        color: {
            switch (sheet.shazam.status) {
            case ShazamViewState.Listening: return Theme.accent
            case ShazamViewState.Processing: return Theme.white(0.7)
            case ShazamViewState.Failed: return Theme.live
            case ShazamViewState.Recognised: return Theme.success
            default: return Theme.white(0.45)
            }
        }
        Accessible.role: Accessible.AlertMessage
        Accessible.name: text
    }
    NText {
        width: parent.width
        text: "میکروفون را نزدیک منبع صدا بگیر و دکمه را لمس کن"
        role: Theme.caption
        font.weight: Font.Normal
        horizontalAlignment: Text.AlignHCenter
        wrapMode: Text.Wrap
        color: Theme.white(0.55)
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }
    Loader {
        width: parent.width
        active: sheet.shazam.hasTrack
        visible: active
        sourceComponent: RecognisedCard { shazam: sheet.shazam }
    }
    NButton {
        width: parent.width
        visible: sheet.shazam.hasFailed
        text: "تلاش دوباره"
        onClicked: sheet.shazam.tryAgain()
    }
}
