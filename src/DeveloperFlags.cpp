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

// Of the demo backend's archive.
PlaylistTrack testTrack(int number)
{
    PlaylistTrack track;
    track.id = number;
    track.trackType = u"radio"_s;
    track.trackID = u"debug-player-"_s + QString::number(number);
    track.title = number == 1 ? u"آهنگ آزمایشی"_s : u"آهنگ آزمایشی "_s + QString::number(number);
    track.artist = u"ناورین"_s;
    track.streamURL = u"/stream/archive?track="_s + QString::number(number - 1);
    return track;
}

Station testStation(const QString &genre, int trackCount)
{
    Station station;
    station.genre = genre;
    station.serverName = u"ایستگاه آزمایشی"_s;
    station.trackIndex = 0;
    station.trackCount = trackCount;
    station.tracks.emplace();
    for (int number = 1; number <= trackCount; ++number)
        station.tracks->append(testTrack(number));
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
    co_await player.selectStation(testStation(u"debug-player"_s, 1));
}

Station detailTestStation()
{
    return testStation(u"debug-detail"_s, 3);
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
