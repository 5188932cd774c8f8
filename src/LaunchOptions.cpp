#include "LaunchOptions.h"

#include "Services/Backend/RequestRules.h"
#include "Shared/ShazamIntents.h"

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

bool isIntent(const QString &name)
{
    return NavorinDestinationQuery::suggestedEntities().contains(NavorinDestination{name});
}

/// What stands before the first of `ends`.
QString before(const QString &text, QStringView ends)
{
    const auto end = std::ranges::find_if(text, [ends](QChar c) { return ends.contains(c); });
    return text.first(end - text.begin());
}

/// QUrl would give it in small letters, whatever it is written in.
QString writtenHost(const QString &address, const QString &scheme)
{
    const QString beginning = scheme + u"://"_s;
    if (!address.startsWith(beginning))
        return {};
    const auto authority = before(address.sliced(beginning.size()), u"/?#");
    return before(authority.sliced(authority.lastIndexOf(u'@') + 1), u":");
}

} // namespace

LaunchOptions LaunchOptions::parse(const QStringList &arguments)
{
    LaunchOptions options;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        const auto &argument = arguments.at(i);
        const auto flag = std::ranges::find(flags, argument, [](const Flag &f) { return f.name; });
        if (flag != flags.end())
            options.*(flag->field) = true;
        else if (argument == u"--intent"_s && isIntent(arguments.value(i + 1)))
            options.intent = arguments.at(++i);
        else if (!argument.startsWith(u'-') && argument.contains(u':'))
            options.address = argument;
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
    text += QStringLiteral("  %1 %2\n")
                .arg(u"--intent shazam"_s, -16)
                .arg(u"find out what song is playing around you"_s);
    text += u"\nThe environment variable NAVORIN_BASE_URL names the backend, NAVORIN_AUDIO_SINK the sound's "
            u"way out\n"
            "and NAVORIN_AUDIO_SOURCE its way in.\n"_s;
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

bool asksForRecognition(const QString &address)
{
    return QUrl(address, QUrl::StrictMode).isValid() && writtenHost(address, u"navorin"_s) == u"shazam"_s;
}

} // namespace navorin
