#pragma once

#include "Models/JsonReader.h"

#include <QHashFunctions>
#include <QList>
#include <QMetaType>
#include <QString>

#include <functional>
#include <optional>

namespace navorin {

/// One entry of a station's track list. Every field may be absent; reading never fails on a field, and `id`,
/// `track_id` and `duration` are taken as JSON numbers and as JSON texts.
struct PlaylistTrack
{
    std::optional<qint64> id;         ///< row id in a playlist or favourites list
    std::optional<QString> trackType; ///< kind of track, for example "radio"
    std::optional<QString> trackID;   ///< identifier within its kind; present whenever any id is
    std::optional<QString> title;
    std::optional<QString> artist;
    std::optional<QString> artworkURL;
    std::optional<QString> streamURL;
    std::optional<qint64> duration; ///< whole seconds

    bool operator==(const PlaylistTrack &) const = default;
};

[[nodiscard]] size_t qHash(const PlaylistTrack &track, size_t seed = 0) noexcept;

/// Everything that can be played: a live stream, a server-driven rotation, a playlist, a favourites list, an
/// offline list, a single track. A station with a non-empty `tracks` is a track-list station; every other one
/// is live.
struct Station
{
    Q_GADGET
public:
    QString genre;                ///< the station's identity, a slug that also names it in addresses
    std::optional<QString> title; ///< of a live station often "artist - title" of the programme
    std::optional<QString> artist;
    std::optional<QString> serverName;          ///< display name as the server gives it
    std::optional<QString> streamURL;           ///< absolute or relative
    std::optional<QString> artworkURL;          ///< absolute or relative
    std::optional<QString> source;              ///< "songsara": tracks are fetched on demand
    std::optional<QString> category;            ///< "iranian", "international", "instrumental"
    std::optional<QString> displayGenre;        ///< human label
    std::optional<qint64> trackIndex;           ///< any value; see normalizedTrackIndex()
    std::optional<qint64> trackCount;           ///< as the server states it, not the length of `tracks`
    std::optional<QList<PlaylistTrack>> tracks; ///< absent and empty are told apart
    std::optional<double> elapsedSeconds;       ///< into the current track, on the server's clock

    [[nodiscard]] QString id() const { return genre; }
    [[nodiscard]] bool hasTracks() const { return tracks && !tracks->isEmpty(); }
    /// The track list has still to be fetched.
    [[nodiscard]] bool needsHydration() const;
    /// `trackIndex` wrapped into the track list; 0 without one.
    [[nodiscard]] qsizetype normalizedTrackIndex() const;
    /// The track at normalizedTrackIndex(), or null. Points into this record.
    [[nodiscard]] const PlaylistTrack *currentTrack() const;
    /// Changes when the thing playing changes.
    [[nodiscard]] QString currentTrackID() const;
    [[nodiscard]] std::optional<QString> currentStreamURL() const;
    /// Asks the offline lookup first; see setOfflineArtworkLookup().
    [[nodiscard]] std::optional<QString> currentTrackArtworkURL() const;
    [[nodiscard]] QString displayName() const;
    [[nodiscard]] QString displayTrackTitle() const;
    [[nodiscard]] QString displayArtist() const;

    /// Compares `genre`, `title`, `artworkURL` and `trackIndex` only: what a screen shows of a station.
    friend bool operator==(const Station &a, const Station &b);
    friend size_t qHash(const Station &station, size_t seed = 0) noexcept
    {
        return qHash(station.genre, seed);
    }
};

/// The envelope of every answer that carries stations.
struct StationsResponse
{
    std::optional<qint64> code;
    std::optional<QString> message;
    std::optional<QList<Station>> data;
};

/// Where the artwork of a downloaded track lies on this machine, as an address; absent if it is not
/// downloaded or has none. The offline library puts itself in here at start-up; records know nothing else of
/// it.
using OfflineArtworkLookup = std::function<std::optional<QString>(const PlaylistTrack &)>;
void setOfflineArtworkLookup(OfflineArtworkLookup lookup);

void read(json::Value &value, PlaylistTrack &track);
void read(json::Value &value, Station &station);
void read(json::Value &value, StationsResponse &response);

} // namespace navorin

Q_DECLARE_METATYPE(navorin::Station)
