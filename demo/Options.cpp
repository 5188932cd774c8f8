#include "Options.h"

#include "Accounts/Identity.h"

#include <QCommandLineParser>
#include <QStandardPaths>

#include <cstdio>

namespace navorin::demo {

using namespace Qt::Literals::StringLiterals;

namespace {

std::nullopt_t complain(const QString &message)
{
    std::fprintf(stderr, "%s\n", qPrintable(message));
    return std::nullopt;
}

/// The option's number within its bounds; `fallback` when it is not given, absent when it is wrong.
std::optional<double> number(const QCommandLineParser &parser, const QString &name, double fallback,
                             double low, double high)
{
    if (!parser.isSet(name))
        return fallback;
    bool readable = false;
    const double value = parser.value(name).toDouble(&readable);
    return readable && value >= low && value <= high ? std::optional(value) : std::nullopt;
}

constexpr double longestSeconds = 1e9;

/// Reads what concerns accounts into `options`; what is wrong with it, or an empty text.
QString readAccountOptions(const QCommandLineParser &parser, Options &options)
{
    const auto seconds = [&parser](const QString &name, std::int64_t fallback) {
        return number(parser, name, static_cast<double>(fallback), 0, longestSeconds);
    };
    const auto tokenSeconds = seconds(u"token-seconds"_s, options.tokenSeconds);
    const auto codeSeconds = seconds(u"code-seconds"_s, options.codeSeconds);
    if (!tokenSeconds || !codeSeconds)
        return u"--token-seconds or --code-seconds is out of bounds"_s;
    options.databaseFile = parser.value(u"database"_s);
    options.tokenSeconds = static_cast<std::int64_t>(*tokenSeconds);
    options.codeSeconds = static_cast<std::int64_t>(*codeSeconds);
    if (!parser.isSet(u"demo-user"_s))
        return {};
    const QString user = parser.value(u"demo-user"_s);
    options.demoUser = {user.section(u':', 0, 0).toStdString(), user.section(u':', 1).toStdString()};
    if (!isUsername(options.demoUser->first) || !isPassword(options.demoUser->second))
        return u"--demo-user takes NAME:PASSWORD, 3 to 24 of a-z 0-9 _ . - and at least 4 characters"_s;
    return {};
}

} // namespace

std::optional<Options> Options::parse(const QStringList &arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(u"Serves a made-up radio to Navorin: stations, music and covers."_s);
    const QCommandLineOption help = parser.addHelpOption();
    parser.addOptions({
        {u"port"_s, u"Port; 0 takes a free one, which the line PORT <n> tells."_s, u"number"_s, u"0"_s},
        {u"bind"_s, u"Address to listen on."_s, u"address"_s, u"127.0.0.1"_s},
        {u"log"_s, u"Write a line for each request to standard error."_s},
        {u"parent-watch"_s, u"End when the parent process ends."_s},
        {u"cache"_s, u"Folder for encoded music."_s, u"folder"_s},
        {u"time-scale"_s, u"How much faster programmes and rotations move."_s, u"factor"_s},
        {u"stations"_s, u"Pad the catalogue to so many stations."_s, u"number"_s},
        {u"tracks"_s, u"Give the station \"archive\" so many tracks."_s, u"number"_s},
        {u"database"_s, u"File of the accounts; :memory: keeps none."_s, u"file"_s},
        {u"token-seconds"_s, u"How long a sign-in lasts."_s, u"seconds"_s},
        {u"code-seconds"_s, u"How long a six-digit code is good."_s, u"seconds"_s},
        {u"demo-user"_s, u"Make an account with playlists and favourites."_s, u"name:password"_s},
        {u"fault"_s,
         u"Make requests whose path begins so fail. Kinds: status:N, cut:BYTES, stall:BYTES, "
         "slow:BYTES_PER_SECOND, delay:SECONDS, garbage, html, truncate."_s,
         u"prefix=kind[:argument]"_s},
    });
    if (!parser.parse(arguments))
        return complain(parser.errorText());
    if (parser.isSet(help))
        parser.showHelp(0);

    const auto port = number(parser, u"port"_s, 0, 0, 65'535);
    const auto scale = number(parser, u"time-scale"_s, 1, 0.001, 100'000);
    const auto stations = number(parser, u"stations"_s, 0, 0, 1'000'000);
    const auto tracks = number(parser, u"tracks"_s, 60, 1, 1'000'000);
    if (!port || !scale || !stations || !tracks)
        return complain(u"--port, --time-scale, --stations or --tracks is out of bounds"_s);
    Options options;
    options.address = parser.value(u"bind"_s).toStdString();
    options.port = static_cast<int>(*port);
    options.logs = parser.isSet(u"log"_s);
    options.watchesParent = parser.isSet(u"parent-watch"_s);
    options.cacheFolder = parser.value(u"cache"_s);
    if (options.cacheFolder.isEmpty())
        options.cacheFolder = QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation) +
                              u"/navorin-demo-backend"_s;
    options.timeScale = *scale;
    options.stations = static_cast<int>(*stations);
    options.archiveTracks = static_cast<int>(*tracks);
    if (const QString wrong = readAccountOptions(parser, options); !wrong.isEmpty())
        return complain(wrong);
    for (const QString &text : parser.values(u"fault"_s)) {
        const auto fault = Fault::parse(text.toStdString());
        if (!fault)
            return complain(u"not a fault: "_s + text);
        options.faults.push_back(*fault);
    }
    return options;
}

} // namespace navorin::demo
