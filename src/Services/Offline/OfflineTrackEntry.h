#pragma once

#include "Models/Station.h"

#include <QByteArray>
#include <QList>
#include <QMetaType>
#include <QString>

#include <optional>

namespace navorin {

/// One track of the offline library, as the index keeps it.
struct OfflineTrackEntry
{
    QString key;                      ///< the track's identity, see offlineKey()
    std::optional<QString> trackType; ///< as the track gave it when it was downloaded, as are the next four
    std::optional<QString> trackID;
    QString title;                           ///< a stand-in if the track had none
    QString artist;                          ///< empty if the track had none
    std::optional<QString> artworkRemoteURL; ///< possibly relative
    std::optional<QString> artworkFileName;  ///< in the library's folder; absent if no artwork was saved
    QString audioFileName;                   ///< in the library's folder
    std::optional<qint64> duration;          ///< whole seconds
    qint64 sizeBytes = 0;                    ///< of the audio file; artwork does not count
    double downloadedAt = 0;                 ///< seconds since 2001-01-01 00:00 UTC, with fraction

    bool operator==(const OfflineTrackEntry &) const = default;
};

[[nodiscard]] size_t qHash(const OfflineTrackEntry &entry, size_t seed = 0) noexcept;

void read(json::Value &value, OfflineTrackEntry &entry);

/// The index file: a compact JSON list, keys in the order of the fields, absent fields left out. It is read
/// back with json::decode<QList<OfflineTrackEntry>>().
[[nodiscard]] QByteArray encodedIndex(const QList<OfflineTrackEntry> &entries);

/// What makes two downloads the same track: its type, a bar, and the first of track id, row id and title that
/// it has. A track with none of the three is never the same as another, not even as itself.
[[nodiscard]] QString offlineKey(const PlaylistTrack &track);

} // namespace navorin

Q_DECLARE_METATYPE(navorin::OfflineTrackEntry)
