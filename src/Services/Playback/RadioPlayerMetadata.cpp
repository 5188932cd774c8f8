#include "Platform/Desktop/DebugLine.h"
#include "Platform/Tasks/Detached.h"
#include "Services/Backend/APIClient.h"
#include "Services/Playback/PlaybackDecisions.h"
#include "Services/Playback/RadioPlayer.h"

#include <QCoro/QCoroFuture>
#include <QPointer>

#include <algorithm>

namespace navorin {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto pollingInterval = 15s;

}

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
    QList<Station> stations;
    try {
        stations = co_await m_client.fetchStations();
    } catch (const std::exception &) {
        co_return; // the next pass is the retry
    }
    const auto fresh = std::ranges::find(stations, old.genre, &Station::genre);
    if (fresh == stations.end())
        co_return;
    switch (metadataOutcome(old, *fresh, m_localTrackOverride)) {
    case MetadataOutcome::Nothing:
        break;
    case MetadataOutcome::LiveUpdate:
        printDebugLine(u"[RadioPlayer] live metadata: "_s + old.title.value_or(u"?"_s) + u" -> "_s +
                       fresh->title.value_or(u"?"_s));
        setCurrentStation(withFreshMetadata(*fresh, m_currentStation));
        break;
    case MetadataOutcome::ServerRotation:
        printDebugLine(u"[RadioPlayer] server rotation: "_s + old.displayTrackTitle() + u" -> "_s +
                       fresh->displayTrackTitle());
        setCurrentStation(*fresh);
        play(*fresh);
        break;
    }
}

} // namespace navorin
