#pragma once

#include <QStringList>
#include <QUrl>

#include <optional>

namespace navorin {

/// What the command line asks for. The flags with "debug" in their names drive a screen without a person at
/// the keyboard; none has any effect on a normal launch.
struct LaunchOptions
{
    bool demo = false;          ///< --demo: start the demo backend and use it
    bool debugPlayer = false;   ///< --debug-player: play a test station
    bool noCover = false;       ///< --no-cover: with --debug-player, leave the full player closed
    bool autoDownload = false;  ///< --autodl: with --debug-player, keep its track for playing offline
    bool debugSync = false;     ///< --debug-sync: play the station "persian" once the catalogue is there
    bool debugLogin = false;    ///< --debug-login: open the account sheet
    bool debugDetail = false;   ///< --debug-detail: open the screen of a test station
    bool debugTelegram = false; ///< --debug-telegram: the login sheet begins at a made-up code step
    bool help = false;
    bool version = false;
    QString unknown; ///< the first argument that means nothing, if any
    QString address; ///< a deep link, as it was given
    QString intent;  ///< --intent NAME: what is to be done, as if the desktop had asked

    /// `arguments` without the program's name.
    [[nodiscard]] static LaunchOptions parse(const QStringList &arguments);
    [[nodiscard]] static QString helpText();
};

/// The backend's root: `fromEnvironment` if it is set, else `builtIn`. Absent unless it is https, or http to
/// a loopback address, without a path.
[[nodiscard]] std::optional<QUrl> backendAddress(const QString &fromEnvironment, const QString &builtIn);

/// Whether a deep link asks for song recognition: the scheme "navorin" with the host "shazam", both in
/// exactly these letters.
[[nodiscard]] bool asksForRecognition(const QString &address);

} // namespace navorin
