#include "LaunchOptions.h"

#include "Services/Backend/RequestRules.h"

#include <algorithm>
#include <array>

namespace navorin {

using namespace Qt::Literals::StringLiterals;

namespace {

struct Flag
{
    QStringView name;
    bool LaunchOptions::*field;
    QStringView meaning;
};

constexpr std::array flags{
    Flag{u"--demo", &LaunchOptions::demo, u"start the demo backend on a free loopback port and use it"},
    Flag{u"--debug-sync", &LaunchOptions::debugSync,
         u"play the station \"persian\" once the catalogue is there"},
    Flag{u"--debug-player", &LaunchOptions::debugPlayer, u"play a test station"},
    Flag{u"--no-cover", &LaunchOptions::noCover, u"with --debug-player, leave the full player closed"},
    Flag{u"--autodl", &LaunchOptions::autoDownload,
         u"with --debug-player, download its track after two seconds"},
    Flag{u"--debug-login", &LaunchOptions::debugLogin, u"open the account sheet"},
    Flag{u"--debug-detail", &LaunchOptions::debugDetail, u"open the screen of a test station"},
    Flag{u"--debug-telegram", &LaunchOptions::debugTelegram,
         u"the login sheet begins at the code step of a made-up sign-up"},
    Flag{u"--help", &LaunchOptions::help, u"show this and end"},
    Flag{u"--version", &LaunchOptions::version, u"show the version and end"},
};

} // namespace

LaunchOptions LaunchOptions::parse(const QStringList &arguments)
{
    LaunchOptions options;
    for (const auto &argument : arguments) {
        const auto flag = std::ranges::find(flags, argument, [](const Flag &f) { return f.name; });
        if (flag != flags.end())
            options.*(flag->field) = true;
        else if (!argument.startsWith(u'-') && argument.contains(u':'))
            options.address = QUrl(argument, QUrl::StrictMode);
        else if (options.unknown.isEmpty())
            options.unknown = argument;
    }
    return options;
}

QString LaunchOptions::helpText()
{
    QString text = u"Usage: navorin [options] [navorin://address]\n\n"_s;
    for (const auto &flag : flags)
        text += QStringLiteral("  %1 %2\n").arg(flag.name.toString(), -16).arg(flag.meaning);
    text +=
        u"\nThe environment variable NAVORIN_BASE_URL names the backend, NAVORIN_AUDIO_SINK the sound's way out.\n"_s;
    return text;
}

std::optional<QUrl> backendAddress(const QString &fromEnvironment, const QString &builtIn)
{
    const QUrl url(fromEnvironment.isEmpty() ? builtIn : fromEnvironment, QUrl::StrictMode);
    const auto bare = url.path().isEmpty() || url.path() == u"/"_s;
    if (!isUsableBase(url) || !bare)
        return {};
    return url;
}

bool asksForRecognition(const QUrl &address)
{
    return address.scheme() == u"navorin"_s && address.host() == u"shazam"_s;
}

} // namespace navorin
