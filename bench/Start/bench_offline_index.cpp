// The offline library is read before the first screen: how long 10,000 tracks keep the start waiting, beside
// reading the same index with Qt's own JSON and asking for the same files.

#include "Platform/Storage/QtFileStore.h"
#include "Services/Backend/APIClient.h"
#include "Services/Offline/OfflineStore.h"
#include "Support/FakeHttpSession.h"
#include "Support/ManualMainQueue.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

using namespace navorin;
using namespace Qt::Literals::StringLiterals;

struct navorin::TestAccess
{
    static std::unique_ptr<OfflineStore> offlineStore(FileStore &files, MainQueue &queue)
    {
        static FakeHttpSession http;
        static APIClient client(QUrl(u"https://backend.test"_s), http);
        return std::unique_ptr<OfflineStore>(new OfflineStore({files, queue, http, client}));
    }
};

namespace {

class Library
{
public:
    explicit Library(qsizetype tracks)
    {
        qputenv("XDG_DATA_HOME", m_data.path().toUtf8());
        m_files.emplace();
        m_files->createFolder(folder());
        QList<OfflineTrackEntry> entries;
        for (qsizetype i = 0; i < tracks; ++i) {
            const auto name = u"%1-4F1C-9B7A-000000000000.mp3"_s.arg(qulonglong(i), 8, 16, QChar(u'0'));
            QFile(folder() + name).open(QIODevice::WriteOnly);
            entries.append(OfflineTrackEntry{.key = u"spotify|%1"_s.arg(i),
                                             .trackType = u"spotify"_s,
                                             .trackID = QString::number(i),
                                             .title = u"آهنگ شمارهٔ %1"_s.arg(i),
                                             .artist = u"خوانندهٔ نمونه"_s,
                                             .artworkRemoteURL = u"/artwork/%1.png"_s.arg(i),
                                             .audioFileName = name,
                                             .duration = 215,
                                             .sizeBytes = 5'000'000,
                                             .downloadedAt = 780'000'000.123456 + double(i)});
        }
        m_files->writeAtomically(index(), encodedIndex(entries));
    }

    [[nodiscard]] QString folder() const { return m_data.filePath(u"navorin/OfflineTracks/"_s); }
    [[nodiscard]] QString index() const { return m_data.filePath(u"navorin/offline_index.json"_s); }
    [[nodiscard]] QtFileStore &files() { return *m_files; }

private:
    QTemporaryDir m_data;
    std::optional<QtFileStore> m_files;
};

void loadIndex(benchmark::State &state)
{
    Library library(state.range(0));
    ManualMainQueue queue;
    for (auto _ : state) {
        const auto store = TestAccess::offlineStore(library.files(), queue);
        if (store->entries().size() != state.range(0))
            state.SkipWithError("tracks are missing");
    }
}
BENCHMARK(loadIndex)->Arg(100)->Arg(10'000)->Unit(benchmark::kMillisecond);

void qtJsonAndExists(benchmark::State &state)
{
    const Library library(state.range(0));
    for (auto _ : state) {
        QFile file(library.index());
        static_cast<void>(file.open(QIODevice::ReadOnly));
        const auto entries = QJsonDocument::fromJson(file.readAll()).array();
        qsizetype there = 0;
        for (const auto &entry : entries)
            there += QFile::exists(library.folder() + entry[u"audioFileName"].toString()) ? 1 : 0;
        benchmark::DoNotOptimize(there);
    }
}
BENCHMARK(qtJsonAndExists)->Arg(10'000)->Unit(benchmark::kMillisecond);

void removeAll(benchmark::State &state)
{
    ManualMainQueue queue;
    for (auto _ : state) {
        state.PauseTiming();
        {
            Library library(state.range(0));
            const auto store = TestAccess::offlineStore(library.files(), queue);
            state.ResumeTiming();
            store->removeAll();
            state.PauseTiming();
        }
        state.ResumeTiming();
    }
}
BENCHMARK(removeAll)->Arg(1'000)->Iterations(20)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
