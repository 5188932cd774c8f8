import QtQuick
import Navorin

FocusScope {
    id: page

    readonly property StoryViewState story: StoryViewState {}
    readonly property bool isWide: width >= 560
    readonly property bool hasVideo: story.hasVideo
    // Beside the video, where there is room.
    readonly property bool isBeside: isWide && hasVideo
    readonly property real margin: isWide ? 28 : 20

    signal closeRequested

    focus: true
    implicitHeight: header.height + content.height + 32
    Accessible.ignored: true // the sheet around it bears its name
    Accessible.name: "استوری هوشمند"

    component Making: Column {
        spacing: 14

        NText {
            width: parent.width
            text: page.story.lengthText
            role: Theme.smallCaption
            color: Theme.white(0.5)
            horizontalAlignment: Text.AlignHCenter
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
        Rectangle {
            width: parent.width
            height: 6
            radius: 3
            color: Theme.trackFill
            visible: page.story.isRendering
            Accessible.role: Accessible.ProgressBar
            Accessible.name: percent.text

            Rectangle {
                anchors.left: parent.left
                width: parent.width * page.story.renderProgress
                height: parent.height
                radius: 3
                color: Theme.accent

                Behavior on width { NumberAnimation { duration: Theme.motionTime(200) } }
            }
        }
        NText {
            id: percent
            width: parent.width
            visible: page.story.isRendering
            text: page.story.percentText
            role: Theme.smallCaption
            color: Theme.white(0.6)
            horizontalAlignment: Text.AlignHCenter
        }
        NButton {
            width: parent.width
            height: Theme.grown(50, 24)
            isPrimary: true
            focus: true
            symbol: page.story.isRendering ? "" : "film"
            hasSpinner: page.story.isRendering
            text: page.story.isRendering ? "در حال ساخت…" : "ساخت ویدیو"
            enabled: !page.story.isRendering
            opacity: page.story.isRendering ? 0.75 : 1
            onClicked: page.story.generate()
        }
        NText {
            width: parent.width
            visible: text !== ""
            text: page.story.errorText
            role: Theme.caption
            color: Theme.live
            opacity: 0.8
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
            Accessible.role: Accessible.AlertMessage
            Accessible.name: text
        }
    }
    component Way: EmptyState {
        topPadding: 20
        bottomPadding: 20
    }

    Item {
        id: header
        width: parent.width
        height: Math.max(Theme.grown(86, 54), hint.y + hint.height + 18)

        NText {
            id: title
            x: parent.width - width - page.margin
            y: 14
            width: parent.width - 2 * page.margin - 52
            text: "استوری هوشمند"
            role: Theme.sheetTitle
            Accessible.role: Accessible.Heading
            Accessible.name: text
        }
        NText {
            id: hint
            x: title.x
            y: title.y + title.height
            width: title.width
            text: "ویدیوی استوری — مدت با بازهی شعر تعیین میشود"
            role: Theme.caption
            color: Theme.white(0.5)
            wrapMode: Text.Wrap
            maximumLineCount: 2
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
        RoundButton {
            x: page.margin - 4
            y: 20
            size: 36
            symbol: "xmark"
            text: "بستن"
            symbolSize: 20
            symbolOpacity: 0.7
            fill: Theme.white(0.07)
            onClicked: page.closeRequested()
        }
    }
    SheetScroll {
        id: view
        anchors.top: header.bottom
        width: parent.width
        height: parent.height - header.height
        contentHeight: content.height + 32

        Item {
            id: content
            x: page.margin
            width: parent.width - 2 * x
            // What is hidden counts nothing.
            height: picker.visible ? picker.height : loading.visible ? loading.height
                                                   : failed.visible ? failed.height : missing.height

            Item {
                id: loading
                width: parent.width
                height: 180
                visible: page.story.content === StoryViewState.Loading

                Spinner {
                    anchors.centerIn: parent
                    size: 28
                    running: parent.visible
                }
            }
            Way {
                id: failed
                width: parent.width
                visible: page.story.content === StoryViewState.LoadFailed
                symbol: "wifi.exclamationmark"
                title: "خطا در دریافت اطلاعات"
                message: "اتصال اینترنت را بررسی کنید و دوباره امتحان کنید."
            }
            Way {
                id: missing
                width: parent.width
                visible: page.story.content === StoryViewState.NotFound
                symbol: "music.note.list"
                title: "متن ترانهای یافت نشد"
                message: "برای این تراک شعر ثبت نشده است؛ آهنگ دیگری انتخاب کنید."
            }
            Column {
                id: picker
                width: parent.width
                visible: page.story.content === StoryViewState.Picker
                spacing: 20

                Item {
                    width: parent.width
                    height: from.height

                    StoryLineMenu {
                        id: from
                        anchors.left: parent.left
                        width: (parent.width - 40) / 2
                        title: "از خط"
                        chosen: page.story.startText
                        rows: page.story.rows
                        index: page.story.startLine
                        onPicked: row => page.story.pickStart(row)
                    }
                    Icon {
                        anchors.centerIn: parent
                        symbol: "arrow.left"
                        size: 20
                        opacity: 0.4
                    }
                    StoryLineMenu {
                        anchors.right: parent.right
                        width: from.width
                        title: "تا خط"
                        chosen: page.story.endText
                        rows: page.story.rows
                        index: page.story.endLine
                        onPicked: row => page.story.pickEnd(row)
                    }
                }
                Item {
                    id: lower
                    width: parent.width
                    height: page.isBeside ? Math.max(making.height, video.height)
                                          : making.height + (page.hasVideo ? 20 + video.height : 0)

                    Making {
                        id: making
                        anchors.left: parent.left
                        y: page.isBeside ? Math.max(0, (360 - height) / 2) : 0
                        width: page.isBeside ? parent.width - 316 - 36 : parent.width
                    }
                    StoryResultView {
                        id: video
                        anchors.right: parent.right
                        y: page.isBeside ? 0 : making.height + 20
                        width: page.isBeside ? 316 : parent.width
                        visible: page.hasVideo
                        story: page.story
                        url: page.story.videoURL
                        savedFlag: page.story.savedToLibrary
                        onRegenerateRequested: page.story.load()
                        onSaveRequested: page.story.saveToLibrary()
                    }
                }
            }
        }
    }
}
