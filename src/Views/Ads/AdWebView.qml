import QtQuick
import QtWebEngine

// The web view of a banner: its page's own loads stay here, links that want a window of their own go to the
// system's browser.
WebEngineView {
    id: view

    property var ads: null

    function show() {
        loadHtml(ads.page, ads.baseAddress)
    }

    backgroundColor: "transparent"
    settings.playbackRequiresUserGesture: true
    settings.showScrollBars: false
    settings.fullScreenSupportEnabled: false
    settings.javascriptCanOpenWindows: true
    profile: WebEngineProfile { offTheRecord: true }
    onNewWindowRequested: request => {
        if (!view.ads.openOutside(request.requestedUrl))
            request.openIn(view)
    }
    onContextMenuRequested: request => request.accepted = true
}
