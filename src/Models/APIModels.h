#pragma once

#include "Models/JsonReader.h"
#include "Models/Station.h"

#include <QHashFunctions>
#include <QList>
#include <QString>

#include <array>
#include <optional>

/// What the backend's answers hold beside stations: plain values. Reading is strict: a field may be left out
/// or null, but a value of another type fails the whole answer. The exceptions stand at their fields.
namespace navorin {

struct User
{
    std::optional<qint64> id;
    std::optional<QString> username;
    std::optional<QString> displayName;
    std::optional<QString> avatarURL;
    std::optional<QString> telegramUsername; ///< the handle that the bot linked
};

struct AuthData
{
    std::optional<QString> token; ///< of the session
    std::optional<User> user;
};

/// A sign-up or a reset of the password that waits for its code.
struct AuthSessionInfo
{
    QString sessionID; ///< never empty
    std::optional<QString> botLink;
    std::optional<QString> botUsername;
    std::optional<QString> telegramUsername;
    qint64 expiresIn = 0; ///< seconds

    bool operator==(const AuthSessionInfo &) const = default;
};

/// The server puts the fields of a session at the top or inside `data`; the top goes before.
struct SessionInfoEnvelope
{
    struct Payload
    {
        std::optional<QString> sessionID;
        std::optional<QString> botLink;
        std::optional<QString> botUsername;
        std::optional<QString> telegramUsername;
        std::optional<qint64> expiresIn; ///< seconds
    };

    std::optional<qint64> code;
    std::optional<QString> message;
    Payload top;
    std::optional<Payload> data;

    /// Absent without a session to speak of: an empty identifier at the top is not made good by another.
    [[nodiscard]] std::optional<AuthSessionInfo> resolved() const;
};

struct TelegramTokenData
{
    std::optional<QString> token;
    std::optional<QString> botURL;
    std::optional<QString> botUsername;
};

struct PlaylistSummary
{
    qint64 id = 0; ///< required
    std::optional<QString> title;
    std::optional<QString> description;
    std::optional<QString> coverURL;
    std::optional<qint64> trackCount;

    bool operator==(const PlaylistSummary &) const = default;
};

struct PlaylistDetail
{
    std::optional<qint64> id;
    std::optional<QString> title;
    std::optional<QString> description;
    std::optional<QString> coverURL;
    std::optional<QList<PlaylistTrack>> tracks;
};

struct PlaylistsData
{
    std::optional<QList<PlaylistSummary>> playlists;
    std::optional<qint64> favoritesCount;
};

/// As PlaylistTrack, but without its tolerance: an identifier sent as a number fails it.
struct FavoriteTrack
{
    qint64 id = 0; ///< required
    std::optional<QString> trackType;
    std::optional<QString> trackID;
    std::optional<QString> title;
    std::optional<QString> artist;
    std::optional<QString> artworkURL;
    std::optional<QString> streamURL;
    std::optional<qint64> duration; ///< whole seconds

    bool operator==(const FavoriteTrack &) const = default;
};

struct ToggleData
{
    std::optional<bool> favorited;
};

struct LyricsLine
{
    std::optional<double> time; ///< where it begins, seconds
    std::optional<QString> text;
    std::optional<QString> translation;

    bool operator==(const LyricsLine &) const = default;
};

struct LyricsData
{
    std::optional<bool> found;
    std::optional<bool> synced; ///< the lines have usable times
    std::optional<QString> title;
    std::optional<QString> artist;
    std::optional<QList<LyricsLine>> lines;
    std::optional<double> elapsedSeconds; ///< the server's position in the track when it answered
};

struct ShazamData
{
    std::optional<QString> title;
    std::optional<QString> artist;
    std::optional<QString> genre;
    std::optional<QString> artworkURL;
    std::optional<QString> streamURL;
    std::optional<qint64> duration; ///< whole seconds
};

struct SpotifyTrack
{
    std::optional<QString> id;
    std::optional<QString> title;
    std::optional<QString> artist;
    std::optional<qint64> duration; ///< whole seconds
    std::optional<QString> streamURL;
    std::optional<QString> artworkURL;

    bool operator==(const SpotifyTrack &) const = default;
};

struct SpotifyEntity
{
    std::optional<QString> id;
    std::optional<QString> type; ///< from "type", else from "kind"; neither fails the record
    std::optional<QString> title;
    std::optional<QString> artist;
    std::optional<QString> coverURL; ///< from "cover_url", else from "artwork_url"; neither fails the record
    std::optional<qint64> trackCount;
    std::optional<QList<SpotifyTrack>> tracks;
};

/// The shape of every answer but those that carry stations.
template <typename Data>
struct Envelope
{
    std::optional<qint64> code;
    std::optional<QString> message;
    std::optional<Data> data;
};

using AuthEnvelope = Envelope<AuthData>;
using TelegramTokenEnvelope = Envelope<TelegramTokenData>;
using PlaylistCreateEnvelope = Envelope<PlaylistSummary>;
using PlaylistsEnvelope = Envelope<PlaylistsData>;
using PlaylistEnvelope = Envelope<PlaylistDetail>;
using FavoritesEnvelope = Envelope<QList<FavoriteTrack>>;
using ToggleResult = Envelope<ToggleData>;
using LyricsEnvelope = Envelope<LyricsData>;
using ShazamEnvelope = Envelope<ShazamData>;
using EntityEnvelope = Envelope<SpotifyEntity>;

void read(json::Value &value, User &user);
void read(json::Value &value, AuthData &data);
void read(json::Value &value, SessionInfoEnvelope::Payload &payload);
void read(json::Value &value, SessionInfoEnvelope &envelope);
void read(json::Value &value, TelegramTokenData &data);
void read(json::Value &value, PlaylistSummary &playlist);
void read(json::Value &value, PlaylistDetail &playlist);
void read(json::Value &value, PlaylistsData &data);
void read(json::Value &value, FavoriteTrack &track);
void read(json::Value &value, ToggleData &data);
void read(json::Value &value, LyricsLine &line);
void read(json::Value &value, LyricsData &data);
void read(json::Value &value, ShazamData &data);
void read(json::Value &value, SpotifyTrack &track);
void read(json::Value &value, SpotifyEntity &entity);

template <typename Data>
void read(json::Value &value, Envelope<Data> &envelope)
{
    static constexpr std::array fields{
        json::optional<&Envelope<Data>::code>("code"),
        json::optional<&Envelope<Data>::message>("message"),
        json::optional<&Envelope<Data>::data>("data"),
    };
    json::readObject<Envelope<Data>>(value, envelope, fields);
}

} // namespace navorin
