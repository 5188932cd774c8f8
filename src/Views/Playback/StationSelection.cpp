#include "Views/Playback/StationSelection.h"

#include "Platform/Tasks/Detached.h"
#include "Services/Playback/RadioPlayer.h"

namespace navorin {

void selectSoon(RadioPlayer &player, const Station &station)
{
    QMetaObject::invokeMethod(
        &player, [&player, station] { detach(player.selectStation(station), "selecting a station"); },
        Qt::QueuedConnection);
}

Station stationAtTrack(Station station, qint64 index)
{
    if (!station.hasTracks())
        return station;
    station.trackIndex = index;
    station.trackIndex = station.normalizedTrackIndex();
    const auto &track = station.tracks->at(*station.trackIndex);
    station.title = track.title;
    station.artist = track.artist;
    if (track.artworkURL)
        station.artworkURL = track.artworkURL;
    station.elapsedSeconds.reset();
    return station;
}

} // namespace navorin
