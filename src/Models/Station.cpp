#include "Models/Station.h"

#include "Models/Text.h"

#include <QUrl>

#include <array>

namespace navorin {

using namespace Qt::Literals::StringLiterals;

namespace {

OfflineArtworkLookup &offlineArtworkLookup()
{
    static OfflineArtworkLookup lookup;
    return lookup;
}

bool isNonEmpty(const std::optional<QString> &text)
{
    return text && !text->isEmpty();
}

/// The backend's names of its categories: a station that bears one has no name of its own.
bool isCategoryName(const QString &name)
{
    return name == u"ایرانی"_s || name == u"بین المللی"_s || name == u"بین\u200Cالمللی"_s ||
           name == u"بینالمللی"_s;
}

/// A programme line "artist - title", cut at its first hyphen; a part without a character is no part.
QList<QStringView> programmeParts(QStringView line)
{
    QList<QStringView> parts;
    const auto hyphen = line.indexOf(u'-');
    for (const auto part : {line.first(hyphen), line.sliced(hyphen + 1)}) {
        if (!part.isEmpty())
            parts.append(part);
    }
    return parts;
}

bool isProgrammeLine(const std::optional<QString> &title)
{
    return title && title->contains(u" - ");
}

QByteArray withCacheBuster(const QString &address, const QString &programme)
{
    const auto queryAllowed = "!$&'()*+,/:;=?@"_ba; // beside letters, digits and -._~
    const auto separator = address.contains(u'?') ? "&v=" : "?v=";
    return address.toUtf8() + separator + QUrl::toPercentEncoding(programme, queryAllowed);
}

} // namespace

size_t qHash(const PlaylistTrack &track, size_t seed) noexcept
{
    return qHashMulti(seed, track.id.value_or(-1), track.trackType.value_or(QString()),
                      track.trackID.value_or(QString()), track.title.value_or(QString()),
                      track.artist.value_or(QString()), track.artworkURL.value_or(QString()),
                      track.streamURL.value_or(QString()), track.duration.value_or(-1));
}

bool operator==(const Station &a, const Station &b)
{
    return a.genre == b.genre && a.title == b.title && a.artworkURL == b.artworkURL &&
           a.trackIndex == b.trackIndex;
}

void setOfflineArtworkLookup(OfflineArtworkLookup lookup)
{
    offlineArtworkLookup() = std::move(lookup);
}

bool Station::needsHydration() const
{
    return source == u"songsara"_s && !hasTracks();
}

qsizetype Station::normalizedTrackIndex() const
{
    if (!hasTracks())
        return 0;
    const auto count = qint64(tracks->size());
    return qsizetype((trackIndex.value_or(0) % count + count) % count);
}

const PlaylistTrack *Station::currentTrack() const
{
    return hasTracks() ? &tracks->at(normalizedTrackIndex()) : nullptr;
}

QString Station::currentTrackID() const
{
    return genre + u'#' + (hasTracks() ? QString::number(normalizedTrackIndex()) : displayTrackTitle());
}

std::optional<QString> Station::currentStreamURL() const
{
    const auto *track = currentTrack();
    if (!track)
        return streamURL;
    if (isNonEmpty(track->streamURL))
        return track->streamURL;
    return QString(u"/stream/"_s + genre + u"?track="_s + QString::number(normalizedTrackIndex()));
}

std::optional<QString> Station::currentTrackArtworkURL() const
{
    if (const auto *track = currentTrack()) {
        if (const auto &lookup = offlineArtworkLookup()) {
            if (auto address = lookup(*track))
                return address;
        }
        if (isNonEmpty(track->artworkURL))
            return track->artworkURL;
    }
    if (!isNonEmpty(artworkURL))
        return {};
    if (hasTracks())
        return artworkURL;
    return QString::fromUtf8(withCacheBuster(*artworkURL, displayTrackTitle()));
}

QString Station::displayName() const
{
    if (isNonEmpty(serverName) && !isCategoryName(*serverName))
        return *serverName;
    return isNonEmpty(title) ? *title : genre;
}

QString Station::displayTrackTitle() const
{
    if (const auto *track = currentTrack(); track && isNonEmpty(track->title))
        return *track->title;
    if (!isNonEmpty(title))
        return displayName();
    return isProgrammeLine(title) ? trimmedBlanks(programmeParts(*title).last()).toString() : *title;
}

QString Station::displayArtist() const
{
    if (const auto *track = currentTrack(); track && isNonEmpty(track->artist))
        return *track->artist;
    if (isNonEmpty(artist))
        return *artist;
    if (!isProgrammeLine(title))
        return {};
    return trimmedBlanks(programmeParts(*title).first()).toString();
}

namespace {

using json::optional;
using json::required;
using json::Scalar;
using json::tolerant;

/// A track while it is read: its three looser fields are settled at the end.
struct WireTrack
{
    PlaylistTrack &track;
    Scalar id, trackID, duration;
};

template <auto member>
constexpr json::Field<WireTrack> tolerantText(std::string_view key)
{
    return {key, false,
            [](json::Value &value, WireTrack &wire) { json::tryText(value, wire.track.*member); }};
}

constexpr std::array trackFields{
    tolerant<&WireTrack::id>("id"),
    tolerantText<&PlaylistTrack::trackType>("track_type"),
    tolerant<&WireTrack::trackID>("track_id"),
    tolerantText<&PlaylistTrack::title>("title"),
    tolerantText<&PlaylistTrack::artist>("artist"),
    tolerantText<&PlaylistTrack::artworkURL>("artwork_url"),
    tolerantText<&PlaylistTrack::streamURL>("stream_url"),
    tolerant<&WireTrack::duration>("duration"),
};

constexpr std::array stationFields{
    required<&Station::genre>("genre"),
    optional<&Station::title>("title"),
    optional<&Station::artist>("artist"),
    optional<&Station::source>("source"),
    optional<&Station::category>("category"),
    optional<&Station::tracks>("tracks"),
    optional<&Station::serverName>("server_name"),
    optional<&Station::streamURL>("stream_url"),
    optional<&Station::artworkURL>("artwork_url"),
    optional<&Station::displayGenre>("display_genre"),
    optional<&Station::trackIndex>("track_index"),
    optional<&Station::trackCount>("track_count"),
    optional<&Station::elapsedSeconds>("elapsed_seconds"),
};

constexpr std::array responseFields{
    optional<&StationsResponse::code>("code"),
    optional<&StationsResponse::message>("message"),
    optional<&StationsResponse::data>("data"),
};

std::optional<qint64> integerOrParsed(const Scalar &scalar)
{
    if (scalar.integer || !scalar.text)
        return scalar.integer;
    return parsedDecimal(*scalar.text);
}

std::optional<QString> identifier(Scalar &trackID, const Scalar &id)
{
    if (trackID.text)
        return std::move(trackID.text);
    if (trackID.integer)
        return QString::number(*trackID.integer);
    if (id.text)
        return id.text;
    return id.integer ? std::optional(QString::number(*id.integer)) : std::nullopt;
}

} // namespace

void read(json::Value &value, PlaylistTrack &track)
{
    WireTrack wire{track, {}, {}, {}};
    json::readObject<WireTrack>(value, wire, trackFields);
    track.id = integerOrParsed(wire.id);
    track.trackID = identifier(wire.trackID, wire.id);
    track.duration = integerOrParsed(wire.duration);
}

void read(json::Value &value, Station &station)
{
    json::readObject<Station>(value, station, stationFields);
}

void read(json::Value &value, StationsResponse &response)
{
    json::readObject<StationsResponse>(value, response, responseFields);
}

} // namespace navorin
