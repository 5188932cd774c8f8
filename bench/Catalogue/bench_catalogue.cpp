#include "../Support/Heartbeat.h"
#include "Platform/Http/QtHttpSession.h"
#include "SampleCatalogue.h"
#include "Services/Backend/APIClient.h"
#include "Services/Catalogue/StationStore.h"
#include "Support/ScriptedHttpServer.h"

#include <QCoreApplication>

#include <benchmark/benchmark.h>

#include <malloc.h>

namespace navorin {

using namespace Qt::Literals::StringLiterals;

struct TestAccess
{
    static std::unique_ptr<APIClient> client(const QUrl &base, HttpSession &session)
    {
        return std::unique_ptr<APIClient>(new APIClient(base, session));
    }
    static std::unique_ptr<StationStore> store(APIClient &client)
    {
        return std::unique_ptr<StationStore>(new StationStore(client));
    }
};

namespace {

constexpr CatalogueShape twoMegabytes{1750, 5, 16, false};
constexpr CatalogueShape twoMegabytesEscaped{1250, 5, 16, true};
constexpr CatalogueShape manyStations{5000, 5001, 0, false};
constexpr CatalogueShape longList{1, 1, 50'000, false};

StationsResponse readByUs(const QByteArray &body)
{
    return json::decode<StationsResponse>(body);
}

/// Whoever reads faster must have read the same.
bool readsTheSame(const QByteArray &body)
{
    const auto ours = readByUs(body).data.value();
    const auto theirs = readByQJsonDocument(body).data.value();
    return std::ranges::equal(ours, theirs, [](const Station &a, const Station &b) {
        return a == b && a.tracks == b.tracks && a.elapsedSeconds == b.elapsedSeconds && a.artist == b.artist;
    });
}

/// Measures the reading alone: freeing the records costs the same whoever made them.
void reading(benchmark::State &state, const CatalogueShape &shape,
             StationsResponse (*read)(const QByteArray &))
{
    const auto body = sampleCatalogue(shape);
    if (!readsTheSame(body))
        state.SkipWithError("the two readers differ");
    for (auto _ : state) {
        const auto start = workedMilliseconds();
        const auto response = read(body);
        state.SetIterationTime((workedMilliseconds() - start) / 1e3);
    }
    state.SetBytesProcessed(state.iterations() * body.size());
    state.counters["body_MB"] = double(body.size()) / 1e6;
}

void loading(benchmark::State &state, const CatalogueShape &shape)
{
    ScriptedHttpServer server;
    const auto body = sampleCatalogue(shape);
    server.script("/api/stations"_ba, {200, body});
    QtHttpSession session;
    const auto client = TestAccess::client(server.url(), session);
    const auto store = TestAccess::store(*client);
    malloc_trim(0); // what was freed before is put in order now, not in the middle of a load
    Heartbeat heartbeat;
    for (auto _ : state) {
        store->load(true);
        while (store->isLoading())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    heartbeat.beat();
    if (store->stations().size() != shape.stations)
        state.SkipWithError("not loaded");
    state.counters["body_MB"] = double(body.size()) / 1e6;
    state.counters["longest_gap_ms"] = heartbeat.longestMilliseconds();
    state.counters["longest_block_ms"] = heartbeat.mostWorkMilliseconds();
}

BENCHMARK_CAPTURE(reading, ours, twoMegabytes, readByUs)->Unit(benchmark::kMillisecond)->UseManualTime();
BENCHMARK_CAPTURE(reading, QJsonDocument, twoMegabytes, readByQJsonDocument)
    ->Unit(benchmark::kMillisecond)
    ->UseManualTime();
BENCHMARK_CAPTURE(reading, ours_escaped, twoMegabytesEscaped, readByUs)
    ->Unit(benchmark::kMillisecond)
    ->UseManualTime();
BENCHMARK_CAPTURE(reading, QJsonDocument_escaped, twoMegabytesEscaped, readByQJsonDocument)
    ->Unit(benchmark::kMillisecond)
    ->UseManualTime();
BENCHMARK_CAPTURE(loading, two_megabytes, twoMegabytes)->Unit(benchmark::kMillisecond)->Iterations(50);
BENCHMARK_CAPTURE(loading, 5000_stations, manyStations)->Unit(benchmark::kMillisecond)->Iterations(50);
BENCHMARK_CAPTURE(loading, 50000_tracks, longList)->Unit(benchmark::kMillisecond)->Iterations(20);

} // namespace
} // namespace navorin

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
}
