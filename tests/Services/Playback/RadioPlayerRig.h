#pragma once

#include "Support/ServicesRig.h"

namespace navorin {

inline Station liveStation(const QString &genre)
{
    return {.genre = genre, .streamURL = QString(QStringLiteral("/stream/") + genre)};
}

inline Station listStation(int count, std::optional<qint64> index = {})
{
    auto station = liveStation(QStringLiteral("list"));
    station.trackIndex = index;
    station.tracks.emplace();
    for (int i = 0; i < count; ++i)
        station.tracks->append(PlaylistTrack{.trackID = QString::number(i)});
    return station;
}

/// The ways in which a test of the player moves what is around it.
class RadioPlayerRig
{
protected:
    using Status = MediaPlayer::TimeControlStatus;

    void select(const Station &station) { detach(m_rig->player->selectStation(station), "test"); }
    void tick(Status status, double seconds = 0)
    {
        m_rig->engine.status = status;
        m_rig->engine.observer(seconds);
        m_rig->queue.drain();
    }
    /// Selects a station that sounds at once.
    void listenTo(const Station &station, double seconds = 1)
    {
        select(station);
        tick(Status::Playing, seconds);
        m_rig->engine.takeCalls();
    }
    /// The oldest request is one for stations, and these are they.
    void answerStations(const QByteArray &stations)
    {
        m_rig->playersHttp.take().answer(QByteArray("{\"data\":[") + stations + QByteArray("]}"));
        m_rig->settle();
    }

    std::optional<ServicesRig> m_rig;
};

} // namespace navorin
