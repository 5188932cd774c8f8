#include "Platform/Desktop/DebugLine.h"
#include "Platform/Tasks/Detached.h"
#include "Services/Backend/APIClient.h"
#include "Services/Playback/PlaybackDecisions.h"
#include "Services/Playback/RadioPlayer.h"

#include <QCoro/QCoroFuture>
#include <QThreadPool>

#include <algorithm>

namespace navorin {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto pollingInterval = 15s;

/// Looks the station up where the catalogue was read, so that the rest of it never reaches the UI thread.
QFuture<std::optional<Station>> fetchStation(const APIClient &client, const QString &genre)
{
    return client.fetchStations().then(
        QThreadPool::globalInstance(), [genre](const QFuture<QList<Station>> &answer) {
            const auto stations = answer.result();
            const auto found = std::ranges::find(stations, genre, &Station::genre);
            return found == stations.end() ? std::nullopt : std::optional(*found);
        });
}

} // namespace

void RadioPlayer::startMetadataPolling()
{
    if (m_metadataTimer)
        return;
    m_metadataTimer = m_queue.every(pollingInterval, [this, weak = QPointer(this)] {
        if (weak)
            later([this] { detach(refreshLiveMetadata(), "refreshing the live metadata"); });
    });
}

QCoro::Task<void> RadioPlayer::refreshLiveMetadata()
{
    // A paused player keeps its timer; this is what keeps it from asking the server.
    if (!m_currentStation || !m_isPlaying)
        co_return;
    const auto old = *m_currentStation;
    std::optional<Station> fresh;
    try {
        fresh = co_await fetchStation(m_client, old.genre);
    } catch (const std::exception &) {
        co_return; // the next pass is the retry
    }
    if (!fresh)
        co_return;
    switch (metadataOutcome(old, *fresh, m_localTrackOverride)) {
    case MetadataOutcome::Nothing:
        break;
    case MetadataOutcome::LiveUpdate:
        printDebugLine(u"[RadioPlayer] live metadata: "_s + old.title.value_or(u"?"_s) + u" -> "_s +
                       fresh->title.value_or(u"?"_s));
        setCurrentStation(withFreshMetadata(*fresh, m_currentStation));
        updateNowPlayingInfo();
        break;
    case MetadataOutcome::ServerRotation:
        printDebugLine(u"[RadioPlayer] server rotation: "_s + old.displayTrackTitle() + u" -> "_s +
                       fresh->displayTrackTitle());
        setCurrentStation(*fresh);
        updateNowPlayingInfo();
        play(*fresh);
        break;
    }
}

} // namespace navorin
