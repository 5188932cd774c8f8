#include "Platform/Audio/MediaPlayer.h"
#include "Services/Playback/PlaybackDecisions.h"
#include "Services/Playback/RadioPlayer.h"

namespace navorin {
namespace {

constexpr double restartThreshold = 5; // seconds into a track from which "previous" means its beginning

}

bool RadioPlayer::canSkipTracks() const
{
    return m_currentStation && m_currentStation->hasTracks() && m_currentStation->tracks->size() > 1;
}

void RadioPlayer::nextTrack()
{
    if (canSkipTracks())
        shiftTrack(1);
}

void RadioPlayer::previousTrack()
{
    if (!canSkipTracks())
        return;
    if (m_currentTime > restartThreshold)
        seek(0);
    else
        shiftTrack(-1);
}

void RadioPlayer::shiftTrack(qint64 delta)
{
    if (!m_currentStation || !m_currentStation->hasTracks())
        return;
    const auto station = shiftedTrack(*m_currentStation, delta);
    setCurrentStation(station);
    m_localTrackOverride = true;
    m_wantsPlayback = true;
    play(station);
}

void RadioPlayer::handleItemEnd(const MediaItem *finished)
{
    if (finished != m_player.currentItem().get())
        return; // a late word of an item that was replaced
    if (canSkipTracks())
        shiftTrack(1);
    else
        setPlaying(false);
}

} // namespace navorin
