#include "../Support/Heartbeat.h"
#include "Platform/Http/QtHttpSession.h"
#include "Platform/Storage/QtFileStore.h"
#include "Platform/Tasks/Detached.h"
#include "Platform/Tasks/QtMainQueue.h"
#include "Services/Backend/APIClient.h"
#include "Services/Offline/OfflineStore.h"
#include "Services/Playback/RadioPlayer.h"
#include "Support/FakeDesktop.h"
#include "Support/FakeMediaPlayer.h"
#include "Support/ScriptedHttpServer.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QImage>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

namespace navorin {

using namespace Qt::Literals::StringLiterals;

struct TestAccess
{
    static std::unique_ptr<APIClient> client(const QUrl &base, HttpSession &session)
    {
        return std::unique_ptr<APIClient>(new APIClient(base, session));
    }
    static std::unique_ptr<OfflineStore> offline(FileStore &files, MainQueue &queue, HttpSession &session,
                                                 const APIClient &client)
    {
        return std::unique_ptr<OfflineStore>(new OfflineStore({files, queue, session, client}));
    }
    static std::unique_ptr<RadioPlayer> player(const RadioPlayer::Surroundings &surroundings)
    {
        return std::unique_ptr<RadioPlayer>(new RadioPlayer(surroundings));
    }
};

namespace {

/// Squares of many colours, with enough detail to make the decoder work.
QByteArray cover(int side, const char *format)
{
    QImage image(side, side, QImage::Format_RGB32);
    for (int y = 0; y < side; ++y) {
        for (int x = 0; x < side; ++x)
            image.setPixel(x, y, qRgb(x / 16 * 7 % 256, y / 16 * 5 % 256, (x ^ y) / 8 % 256));
    }
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, format);
    return buffer.data();
}

/// From the change of programme to its colour on the screen, and what of that the UI thread had to bear.
void programmeChange(benchmark::State &state, const char *format)
{
    ScriptedHttpServer server;
    const auto body = cover(4000, format);
    for (int i = 1; i <= int(state.max_iterations); ++i)
        server.script("/cover?v="_ba + QByteArray::number(i), {200, body});
    QtHttpSession session;
    const QTemporaryDir home;
    qputenv("XDG_DATA_HOME", home.path().toUtf8());
    QtMainQueue queue;
    QtFileStore files;
    FakeMediaPlayer engine;
    FakeDesktop desktop;
    const auto client = TestAccess::client(server.url(), session);
    const auto offline = TestAccess::offline(files, queue, session, *client);
    const auto player = TestAccess::player(
        {engine, desktop.audioSession, desktop.nowPlaying, desktop.remoteCommands, queue, *client, *offline});
    Station station;
    station.genre = u"live"_s;
    station.streamURL = u"/stream"_s;
    station.artworkURL = u"/cover"_s;
    Heartbeat heartbeat;
    int programme = 0;
    for (auto _ : state) {
        station.title = QString::number(++programme);
        detach(player->selectStation(station), "benchmark");
        while (!desktop.nowPlaying.infos.constLast().artwork)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    heartbeat.beat();
    engine.failPendingTracks();
    QCoreApplication::processEvents();
    state.counters["body_MB"] = double(body.size()) / 1e6;
    state.counters["longest_gap_ms"] = heartbeat.longestMilliseconds();
    state.counters["longest_block_ms"] = heartbeat.mostWorkMilliseconds();
}

BENCHMARK_CAPTURE(programmeChange, 4000x4000_jpeg, "jpeg")->Unit(benchmark::kMillisecond)->Iterations(10);
BENCHMARK_CAPTURE(programmeChange, 4000x4000_png, "png")->Unit(benchmark::kMillisecond)->Iterations(5);

} // namespace
} // namespace navorin

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
}
