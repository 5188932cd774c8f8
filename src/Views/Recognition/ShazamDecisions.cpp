#include "Views/Recognition/ShazamDecisions.h"

namespace navorin {

using namespace Qt::Literals::StringLiterals;

ShazamStatus shazamStatus(bool isListening, bool isProcessing, bool hasFailed, bool hasTrack)
{
    if (isListening)
        return ShazamStatus::Listening;
    if (isProcessing)
        return ShazamStatus::Processing;
    if (hasFailed)
        return ShazamStatus::Failed;
    return hasTrack ? ShazamStatus::Recognised : ShazamStatus::Ready;
}

QString shazamStatusText(ShazamStatus status, const QString &errorMessage)
{
    switch (status) {
    case ShazamStatus::Listening:
        return u"در حال گوش دادن…"_s;
    case ShazamStatus::Processing:
        return u"در حال شناسایی با هوش مصنوعی…"_s;
    case ShazamStatus::Failed:
        return errorMessage;
    case ShazamStatus::Recognised:
        return u"شناسایی شد"_s;
    case ShazamStatus::Ready:
        return u"آماده شناسایی"_s;
    }
    Q_UNREACHABLE();
}

Station stationFor(const ShazamData &data)
{
    PlaylistTrack track;
    track.trackType = u"shazam"_s;
    track.trackID = data.title; // a recognised song has no other identifier
    track.title = data.title;
    track.artist = data.artist;
    track.artworkURL = data.artworkURL;
    track.streamURL = data.streamURL;
    track.duration = data.duration;

    Station station;
    station.genre = u"shazam-result"_s;
    station.title = data.title;
    station.artist = data.artist;
    station.serverName = u"شزم"_s;
    station.artworkURL = data.artworkURL;
    station.source = u"shazam"_s;
    station.category = u"shazam"_s;
    station.trackIndex = 0;
    station.trackCount = 1;
    station.tracks = {track};
    return station;
}

} // namespace navorin
