#pragma once

#include "Platform/Storage/QtFileStore.h"
#include "Platform/Tasks/Detached.h"
#include "Services/Backend/APIClient.h"
#include "Services/Offline/OfflineStore.h"
#include "Services/Playback/RadioPlayer.h"
#include "Support/FakeDesktop.h"
#include "Support/FakeHttpSession.h"
#include "Support/FakeMediaPlayer.h"
#include "Support/ManualMainQueue.h"
#include "Support/TestAccess.h"

#include <QTemporaryDir>
#include <QThreadPool>

#include <memory>

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

/// A player over an engine, a desktop, a network and a clock that do what a test says.
class RadioPlayerRig
{
protected:
    using Status = MediaPlayer::TimeControlStatus;

    void setUp()
    {
        m_home = std::make_unique<QTemporaryDir>();
        qputenv("XDG_DATA_HOME", m_home->path().toUtf8());
        m_http = std::make_unique<FakeHttpSession>();
        m_queue = std::make_unique<ManualMainQueue>();
        m_files = std::make_unique<QtFileStore>();
        m_engine = std::make_unique<FakeMediaPlayer>();
        m_desktop = std::make_unique<FakeDesktop>();
        m_client = TestAccess::make<APIClient>(QUrl(QStringLiteral("https://backend.test")), *m_http);
        makePlayer();
    }
    void makePlayer()
    {
        m_player.reset();
        m_offline = TestAccess::makeIn<OfflineStore>(*m_files, *m_queue, *m_http, *m_client);
        m_player =
            TestAccess::makeIn<RadioPlayer>(*m_engine, m_desktop->audioSession, m_desktop->nowPlaying,
                                            m_desktop->remoteCommands, *m_queue, *m_client, *m_offline);
    }
    /// Coroutines that still wait end before what they use goes.
    void tearDown()
    {
        do {
            settle();
            m_engine->failPendingTracks();
            while (!m_http->exchanges.empty())
                m_http->take().fail();
            settle();
            m_engine->failPendingTracks(); // of what a failed hydration has started
            m_queue->drain();
        } while (!m_http->exchanges.empty());
        m_player.reset();
        m_offline.reset();
        m_client.reset();
    }

    void select(const Station &station) { detach(m_player->selectStation(station), "test"); }
    void tick(Status status, double seconds = 0)
    {
        m_engine->status = status;
        m_engine->observer(seconds);
        m_queue->drain();
    }
    /// Selects a station that sounds at once.
    void listenTo(const Station &station, double seconds = 1)
    {
        select(station);
        tick(Status::Playing, seconds);
        m_engine->takeCalls();
    }
    void settle()
    {
        QThreadPool::globalInstance()->waitForDone();
        m_queue->drain();
    }
    /// The oldest request is one for stations, and these are they.
    void answerStations(const QByteArray &stations)
    {
        m_http->take().answer(QByteArray("{\"data\":[") + stations + QByteArray("]}"));
        settle();
    }

    std::unique_ptr<QTemporaryDir> m_home;
    std::unique_ptr<FakeHttpSession> m_http;
    std::unique_ptr<ManualMainQueue> m_queue;
    std::unique_ptr<QtFileStore> m_files;
    std::unique_ptr<FakeMediaPlayer> m_engine;
    std::unique_ptr<FakeDesktop> m_desktop;
    std::unique_ptr<APIClient> m_client;
    std::unique_ptr<OfflineStore> m_offline;
    std::unique_ptr<RadioPlayer> m_player;
};

} // namespace navorin
