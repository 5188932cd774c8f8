#include "DeveloperFlags.h"

#include "Platform/Tasks/Detached.h"
#include "Platform/Tasks/MainQueue.h"
#include "Services/Catalogue/StationStore.h"
#include "Services/Offline/OfflineStore.h"
#include "Services/Playback/RadioPlayer.h"

#include <QCoro/QCoroFuture>

#include <algorithm>

namespace navorin {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr int catalogueRounds = 40;
constexpr auto catalogueRound = 500ms;
constexpr auto downloadDelay = 2s;

Station testStation()
{
    PlaylistTrack track;
    track.id = 1;
    track.trackType = u"radio"_s;
    track.trackID = u"debug-player-1"_s;
    track.title = u"آهنگ آزمایشی"_s;
    track.artist = u"ناورین"_s;
    track.streamURL = u"/stream/archive?track=0"_s; // one that the demo backend has
    Station station;
    station.genre = u"debug-player"_s;
    station.serverName = u"ایستگاه آزمایشی"_s;
    station.trackIndex = 0;
    station.trackCount = 1;
    station.tracks = QList{track};
    return station;
}

} // namespace

QCoro::Task<void> playPersianStation(MainQueue &queue, StationStore &store, RadioPlayer &player)
{
    if (player.hasStation())
        co_return;
    for (int round = 0; round < catalogueRounds && store.stations().isEmpty(); ++round)
        co_await queue.sleep(catalogueRound);
    const auto stations = store.stations();
    const auto persian = std::ranges::find(stations, u"persian"_s, &Station::genre);
    if (persian == stations.end())
        co_return;
    player.setFullPlayerPresented(true);
    co_await player.selectStation(*persian);
}

QCoro::Task<void> playTestStation(RadioPlayer &player, bool opensFullPlayer)
{
    if (player.hasStation())
        co_return;
    if (opensFullPlayer)
        player.setFullPlayerPresented(true);
    co_await player.selectStation(testStation());
}

QCoro::Task<void> downloadCurrentTrack(MainQueue &queue, RadioPlayer &player, OfflineStore &offline)
{
    co_await queue.sleep(downloadDelay);
    const auto &station = player.currentStation();
    if (const auto *track = station ? station->currentTrack() : nullptr)
        offline.download(*track);
}

void applyDeveloperFlags(const LaunchOptions &options, MainQueue &queue, StationStore &store,
                         RadioPlayer &player, OfflineStore &offline)
{
    if (options.debugPlayer)
        detach(playTestStation(player, !options.noCover), "--debug-player");
    if (options.debugPlayer && options.autoDownload)
        detach(downloadCurrentTrack(queue, player, offline), "--autodl");
    if (options.debugSync)
        detach(playPersianStation(queue, store, player), "--debug-sync");
}

} // namespace navorin
