#include "Models/APIModels.h"

#include <utility>

namespace navorin {
namespace {

using json::optional;
using json::required;

constexpr qint64 usualValidity = 300; // seconds, of a session of which the server says none

constexpr std::array userFields{
    optional<&User::id>("id"),
    optional<&User::username>("username"),
    optional<&User::displayName>("display_name"),
    optional<&User::avatarURL>("avatar_url"),
    optional<&User::telegramUsername>("telegram_username"),
};

constexpr std::array authFields{
    optional<&AuthData::token>("token"),
    optional<&AuthData::user>("user"),
};

constexpr std::array payloadFields{
    optional<&SessionInfoEnvelope::Payload::sessionID>("session_id"),
    optional<&SessionInfoEnvelope::Payload::botLink>("bot_link"),
    optional<&SessionInfoEnvelope::Payload::botUsername>("bot_username"),
    optional<&SessionInfoEnvelope::Payload::telegramUsername>("telegram_username"),
    optional<&SessionInfoEnvelope::Payload::expiresIn>("expires_in"),
};

constexpr std::array telegramTokenFields{
    optional<&TelegramTokenData::token>("token"),
    optional<&TelegramTokenData::botURL>("bot_url"),
    optional<&TelegramTokenData::botUsername>("bot_username"),
};

constexpr std::array summaryFields{
    required<&PlaylistSummary::id>("id"),
    optional<&PlaylistSummary::title>("title"),
    optional<&PlaylistSummary::description>("description"),
    optional<&PlaylistSummary::coverURL>("cover_url"),
    optional<&PlaylistSummary::trackCount>("track_count"),
};

constexpr std::array detailFields{
    optional<&PlaylistDetail::id>("id"),
    optional<&PlaylistDetail::title>("title"),
    optional<&PlaylistDetail::description>("description"),
    optional<&PlaylistDetail::coverURL>("cover_url"),
    optional<&PlaylistDetail::tracks>("tracks"),
};

constexpr std::array playlistsFields{
    optional<&PlaylistsData::playlists>("playlists"),
    optional<&PlaylistsData::favoritesCount>("favorites_count"),
};

constexpr std::array favoriteFields{
    required<&FavoriteTrack::id>("id"),
    optional<&FavoriteTrack::trackType>("track_type"),
    optional<&FavoriteTrack::trackID>("track_id"),
    optional<&FavoriteTrack::title>("title"),
    optional<&FavoriteTrack::artist>("artist"),
    optional<&FavoriteTrack::artworkURL>("artwork_url"),
    optional<&FavoriteTrack::streamURL>("stream_url"),
    optional<&FavoriteTrack::duration>("duration"),
};

constexpr std::array toggleFields{
    optional<&ToggleData::favorited>("favorited"),
};

constexpr std::array lineFields{
    optional<&LyricsLine::time>("time"),
    optional<&LyricsLine::text>("text"),
    optional<&LyricsLine::translation>("translation"),
};

constexpr std::array lyricsFields{
    optional<&LyricsData::found>("found"), optional<&LyricsData::synced>("synced"),
    optional<&LyricsData::title>("title"), optional<&LyricsData::artist>("artist"),
    optional<&LyricsData::lines>("lines"), optional<&LyricsData::elapsedSeconds>("elapsed_seconds"),
};

constexpr std::array shazamFields{
    optional<&ShazamData::title>("title"),          optional<&ShazamData::artist>("artist"),
    optional<&ShazamData::genre>("genre"),          optional<&ShazamData::artworkURL>("artwork_url"),
    optional<&ShazamData::streamURL>("stream_url"), optional<&ShazamData::duration>("duration"),
};

constexpr std::array spotifyTrackFields{
    optional<&SpotifyTrack::id>("id"),
    optional<&SpotifyTrack::title>("title"),
    optional<&SpotifyTrack::artist>("artist"),
    optional<&SpotifyTrack::duration>("duration"),
    optional<&SpotifyTrack::streamURL>("stream_url"),
    optional<&SpotifyTrack::artworkURL>("artwork_url"),
};

/// A session while it is read: its own fields stand beside those of the envelope.
template <auto member>
constexpr json::Field<SessionInfoEnvelope> topField(std::string_view key)
{
    return {key, false, [](json::Value &value, SessionInfoEnvelope &envelope) {
                json::read(value, envelope.top.*member);
            }};
}

using Payload = SessionInfoEnvelope::Payload;

constexpr std::array sessionFields{
    optional<&SessionInfoEnvelope::code>("code"),
    optional<&SessionInfoEnvelope::message>("message"),
    topField<&Payload::sessionID>("session_id"),
    topField<&Payload::botLink>("bot_link"),
    topField<&Payload::botUsername>("bot_username"),
    topField<&Payload::telegramUsername>("telegram_username"),
    topField<&Payload::expiresIn>("expires_in"),
    optional<&SessionInfoEnvelope::data>("data"),
};

/// An entity while it is read: two of its fields come under either of two keys.
struct WireEntity
{
    SpotifyEntity &entity;
    std::optional<QString> type, kind, coverURL, artworkURL;
};

template <auto member>
constexpr json::Field<WireEntity> entityField(std::string_view key)
{
    return {key, false, [](json::Value &value, WireEntity &wire) { json::read(value, wire.entity.*member); }};
}

template <auto member>
constexpr json::Field<WireEntity> tolerantText(std::string_view key)
{
    return {key, false, [](json::Value &value, WireEntity &wire) { json::tryText(value, wire.*member); }};
}

constexpr std::array entityFields{
    entityField<&SpotifyEntity::id>("id"),
    tolerantText<&WireEntity::type>("type"),
    tolerantText<&WireEntity::kind>("kind"),
    entityField<&SpotifyEntity::title>("title"),
    entityField<&SpotifyEntity::artist>("artist"),
    tolerantText<&WireEntity::coverURL>("cover_url"),
    tolerantText<&WireEntity::artworkURL>("artwork_url"),
    entityField<&SpotifyEntity::trackCount>("track_count"),
    entityField<&SpotifyEntity::tracks>("tracks"),
};

template <typename T>
const std::optional<T> &firstOf(const std::optional<T> &top, const std::optional<T> &inside)
{
    return top ? top : inside;
}

} // namespace

std::optional<AuthSessionInfo> SessionInfoEnvelope::resolved() const
{
    const auto inside = data.value_or(Payload());
    const auto identifier = firstOf(top.sessionID, inside.sessionID);
    if (!identifier || identifier->isEmpty())
        return {};
    return AuthSessionInfo{*identifier, firstOf(top.botLink, inside.botLink),
                           firstOf(top.botUsername, inside.botUsername),
                           firstOf(top.telegramUsername, inside.telegramUsername),
                           firstOf(top.expiresIn, inside.expiresIn).value_or(usualValidity)};
}

void read(json::Value &value, User &user)
{
    json::readObject<User>(value, user, userFields);
}

void read(json::Value &value, AuthData &data)
{
    json::readObject<AuthData>(value, data, authFields);
}

void read(json::Value &value, SessionInfoEnvelope::Payload &payload)
{
    json::readObject<SessionInfoEnvelope::Payload>(value, payload, payloadFields);
}

void read(json::Value &value, TelegramTokenData &data)
{
    json::readObject<TelegramTokenData>(value, data, telegramTokenFields);
}

void read(json::Value &value, PlaylistSummary &playlist)
{
    json::readObject<PlaylistSummary>(value, playlist, summaryFields);
}

void read(json::Value &value, PlaylistDetail &playlist)
{
    json::readObject<PlaylistDetail>(value, playlist, detailFields);
}

void read(json::Value &value, PlaylistsData &data)
{
    json::readObject<PlaylistsData>(value, data, playlistsFields);
}

void read(json::Value &value, FavoriteTrack &track)
{
    json::readObject<FavoriteTrack>(value, track, favoriteFields);
}

void read(json::Value &value, ToggleData &data)
{
    json::readObject<ToggleData>(value, data, toggleFields);
}

void read(json::Value &value, LyricsLine &line)
{
    json::readObject<LyricsLine>(value, line, lineFields);
}

void read(json::Value &value, LyricsData &data)
{
    json::readObject<LyricsData>(value, data, lyricsFields);
}

void read(json::Value &value, ShazamData &data)
{
    json::readObject<ShazamData>(value, data, shazamFields);
}

void read(json::Value &value, SpotifyTrack &track)
{
    json::readObject<SpotifyTrack>(value, track, spotifyTrackFields);
}

void read(json::Value &value, SessionInfoEnvelope &envelope)
{
    json::readObject<SessionInfoEnvelope>(value, envelope, sessionFields);
}

void read(json::Value &value, SpotifyEntity &entity)
{
    WireEntity wire{entity, {}, {}, {}, {}};
    json::readObject<WireEntity>(value, wire, entityFields);
    entity.type = firstOf(wire.type, wire.kind);
    entity.coverURL = firstOf(wire.coverURL, wire.artworkURL);
}

} // namespace navorin
