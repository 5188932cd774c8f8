#pragma once

#include "Models/Station.h"
#include "Views/Ads/AdBannerView.h"

#include <optional>

class QQmlEngine;

namespace navorin {

class DesktopSettings;
class MainQueue;
class MediaLibrary;
class ShareSheet;
class UrlOpener;

/// What screens take from the desktop. Outlives them.
struct ViewSurroundings
{
    MainQueue &queue;
    UrlOpener &urlOpener;
    /// Show the code step of a sign-up without a server.
    bool debugTelegram = false;
    /// Open the account sheet at start.
    bool debugLogin = false;
    /// Open this station's screen at start.
    std::optional<Station> debugDetail;
    /// Absent if there are no advertisements.
    std::optional<AdNetwork> adNetwork;
    /// What a finished video is handed to; both there before it can be made.
    ShareSheet *shareSheet = nullptr;
    MediaLibrary *mediaLibrary = nullptr;
    /// How large texts are wanted and whether things may move; without it everything is as drawn.
    DesktopSettings *settings = nullptr;
};

/// Brings what the screens draw with into `engine`: fonts and symbols. Once, after the application
/// object is made and before the first screen is loaded.
void prepareViews(QQmlEngine &engine, const ViewSurroundings &surroundings);

/// What prepareViews() was given last. Fatal before it.
[[nodiscard]] const ViewSurroundings &viewSurroundings();

} // namespace navorin
